// Shows a report in a frame of its own: its styles stay its own, and it can run nothing.

/** Shows the HTML of a report, with all prolines or without those that are trans. */
export function showReport(frame, html, withTrans) {
  frame.onload = () => prepare(frame, withTrans);
  frame.srcdoc = html;
}

/** Shows or leaves out the cards and rows of trans prolines in the report on show. The saved report has them all. */
export function showTrans(frame, withTrans) {
  for (const mark of frame.contentDocument.querySelectorAll(".card > h3 use[href='#t'], td use[href='#t']"))
    mark.closest(".card, tr").hidden = !withTrans;
  fit(frame);
}

/** Gives the frame the height of what is in it. */
function fit(frame) {
  frame.style.height = "0"; // what is shorter now must be measured anew
  frame.style.height = `${frame.contentDocument.documentElement.scrollHeight + 2}px`;
}

function prepare(frame, withTrans) {
  const inside = frame.contentDocument;
  showTrans(frame, withTrans);
  inside.addEventListener("toggle", () => fit(frame), true); // a fold of the report opens or closes
  // Within a srcdoc a link to a place of the report would load this page into the frame.
  inside.addEventListener("click", (event) => {
    const place = event.target.closest?.("a[href^='#']")?.getAttribute("href").slice(1);
    const target = place && inside.getElementById(place);
    if (!target) return;
    event.preventDefault();
    if (target.localName === "details") target.open = true;
    requestAnimationFrame(() => target.scrollIntoView());
  });
}

/** Keeps the height right when the width of the window changes. */
export function followWidth(frame) {
  let width = frame.clientWidth;
  new ResizeObserver(() => {
    if (frame.clientWidth === width || frame.contentDocument?.body === null) return;
    width = frame.clientWidth;
    fit(frame);
  }).observe(frame);
}
