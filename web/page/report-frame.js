// Shows a report in a frame, so that its styles apply only there and it cannot run scripts. Prints it without the frame.

/**
 * Shows the HTML of a report, with all prolines or without those that are trans. Returns the answer of the report,
 * which the page shows in its own first line.
 */
export function showReport(frame, html, withTrans) {
  return new Promise((resolve) => {
    frame.onload = () => resolve(prepare(frame, withTrans));
    frame.srcdoc = html;
  });
}

/** Shows or hides the lines and rows of trans prolines in the report on show. The saved report has them all. */
export function showTrans(frame, withTrans) {
  for (const part of frame.contentDocument.querySelectorAll(".trans, .prolines tr:has(use[href='#t'])"))
    part.hidden = !withTrans;
}

/** Returns the prolines on show as lines with tabs between the cells. The first cell is the chain if there are several. */
export function tableText(frame) {
  const tables = [...frame.contentDocument.querySelectorAll("table.prolines")];
  const cells = (row) => [...row.cells].map((cell) => cell.textContent.trim());
  const chainOf = (table) => [...(table.closest(".chain")?.querySelectorAll("summary") ?? [])].slice(0, 1);
  const lines = tables.flatMap((table) => [...table.tBodies[0].rows].filter((row) => !row.hidden)
    .map((row) => [...chainOf(table).map((title) => title.textContent), ...cells(row)]));
  const titles = tables.slice(0, 1).map((table) => [...chainOf(table).map(() => "Chain"), ...cells(table.tHead.rows[0])]);
  return [...titles, ...lines].map((line) => `${line.join("\t")}\n`).join("");
}

function prepare(frame, withTrans) {
  const inside = frame.contentDocument;
  showTrans(frame, withTrans);
  // The frame is as high as its content, and never lower in between: a page that shrinks loses the reader's place.
  new ResizeObserver(() => {
    frame.style.height = `${Math.ceil(inside.documentElement.getBoundingClientRect().height) + 2}px`;
  }).observe(inside.documentElement);
  // In a srcdoc, a link to a place in the report would load this page into the frame.
  inside.addEventListener("click", (event) => {
    const place = event.target.closest?.("a[href^='#']")?.getAttribute("href").slice(1);
    const target = place && inside.getElementById(place);
    if (!target) return;
    event.preventDefault();
    const fold = target.closest("details");
    if (fold !== null) fold.open = true;
    // After two animation frames the fold is open and the frame has its height.
    requestAnimationFrame(() => requestAnimationFrame(() => target.scrollIntoView()));
  });
  // The page has the answer above the report, and buttons instead of commands of the program.
  const onlyInFile = inside.createElement("style");
  onlyInFile.textContent = "main > :is(h1, .lead, .notices), #formats, #options, p:has(> a[href='#options']) { display: none; }";
  inside.head.append(onlyInFile);
  return [...inside.querySelectorAll("main > .lead")].map((text) => text.textContent).join(" ");
}

/**
 * Prints the report alone and whole, with its folds open. Browsers cut a frame wherever the paper ends. While it prints,
 * the report is therefore part of the page, with its own style.
 */
export function printReport(frame, pageStyle) {
  const paper = document.createElement("div");
  let title;
  addEventListener("beforeprint", () => {
    const inside = frame.contentDocument;
    if (frame.getClientRects().length === 0 || paper.isConnected) return;
    const alone = document.createElement("style");
    alone.textContent = "body > :not(#paper) { display: none !important; }";
    paper.id = "paper";
    paper.replaceChildren(...[inside.querySelector("style"), alone, ...inside.body.childNodes]
      .map((node) => document.importNode(node, true)));
    for (const fold of paper.querySelectorAll("details:not(.line)")) fold.open = true;
    pageStyle.media = "not print";
    title = document.title;
    document.title = inside.title;
    document.body.append(paper);
  });
  addEventListener("afterprint", () => {
    if (!paper.isConnected) return;
    paper.remove();
    pageStyle.media = "";
    document.title = title;
  });
}
