// Class names of marks are short, because a page has thousands of bars: c cis, t trans, u undecided, n none,
// p the start of every proline, h missing, va and vd a structure that agrees or disagrees; e end, m middle,
// s small, b bold.
#include "report/html_parts.h"

namespace zorvela {

const char* const kHtmlStyle = R"css(
:root{color-scheme:light dark;--text:#1b1f24;--page:#fff;--card:#f6f7f8;--line:#c9ced4;--faint:#5b6470;
--grid:#dfe3e7;--cis:#d55e00;--trans:#0072b2;--undecided:#767676;--start:#a3abb5;--link:#00598c}
@media (prefers-color-scheme:dark){:root{--text:#e6e9ed;--page:#14171b;--card:#1c2026;--line:#3d454f;--faint:#a5afba;
--grid:#2e353d;--trans:#3391cc;--start:#68727e;--link:#7cc4f0}}
@media (forced-colors:active){:root{--text:CanvasText;--page:Canvas;--card:Canvas;--line:CanvasText;--faint:CanvasText;
--grid:CanvasText;--undecided:CanvasText;--start:CanvasText;--link:LinkText}svg,.bar{forced-color-adjust:none}}
*{box-sizing:border-box}
body{margin:0 auto;padding:20px 16px 40px;max-width:1184px;background:var(--page);color:var(--text);
font:15px/1.45 system-ui,-apple-system,"Segoe UI",Roboto,"Helvetica Neue",Arial,sans-serif;overflow-wrap:anywhere}
h1{font-size:1.55rem;line-height:1.2;margin:0 0 6px}h2{font-size:1.2rem;margin:24px 0 8px}
.grid h2{font-size:1.1rem;margin:0 0 4px}p{margin:0 0 8px}a{color:var(--link)}
.lead{font-size:1.1rem}.faint{color:var(--faint);font-size:.9rem}
.notices{border-left:4px solid var(--cis);padding-left:4px}.key{display:flex;flex-wrap:wrap;gap:4px 18px;margin:10px 0;padding:0;list-style:none}
svg.i{width:1em;height:1em;vertical-align:-.12em;overflow:visible}
.grid{display:grid;grid-template-columns:repeat(auto-fill,minmax(min(100%,340px),1fr));gap:16px;align-items:start}
figure{min-width:0;margin:0 0 16px}
.card{min-width:0;margin:0;background:var(--card);border:1px solid var(--line);border-radius:6px;padding:12px}
.card p{margin:0 0 6px}.card .faint{font-size:.85rem}
figcaption{color:var(--faint);font-size:.85rem;margin-top:4px}
.strips{margin:6px 0 0}.strips,.strips svg{gap:4px 20px}
svg.w{display:block;width:100%;height:auto;max-width:340px}
.defs{position:absolute}
text{font-size:12px;fill:var(--text)}
.s{font-size:11px;fill:var(--faint)}.e{text-anchor:end}.m{text-anchor:middle}.b{font-weight:700}
.c{fill:var(--cis)}.t{fill:var(--trans)}.u{fill:var(--undecided)}.p{fill:var(--start)}
.n{fill:var(--page);stroke:var(--faint);stroke-width:1.5}
.va,.vd{fill:none;stroke:var(--faint)}.vd{stroke:var(--text);stroke-width:2.2}
.l,.z,.d{fill:none;stroke:var(--faint);stroke-width:1}.d{stroke-dasharray:5 4}
.ec{fill:var(--cis);fill-opacity:.14;stroke:var(--cis);stroke-opacity:.45}
.et{fill:var(--trans);fill-opacity:.12;stroke:var(--trans);stroke-opacity:.45}
.rc,.rt,.ru,.rn{stroke-width:2.5}.rc{stroke:var(--cis)}.rt{stroke:var(--trans)}.ru{stroke:var(--undecided)}
.rn{stroke:var(--faint);stroke-dasharray:2 2}
.a0{fill:none;stroke:var(--line)}.a1,.a2,.a3,.a4{fill:var(--faint);fill-opacity:.25}
.a2{fill-opacity:.45}.a3{fill-opacity:.7}.a4{fill-opacity:1}
.bar{position:relative;min-width:36px;print-color-adjust:exact;
-webkit-print-color-adjust:exact;background:linear-gradient(var(--faint),var(--faint)) 60%/1px 100% no-repeat}
.bar i{position:absolute;top:.2em;bottom:.2em;background:var(--undecided)}
i.c{background:var(--cis)}i.t{background:var(--trans)}i.p{background:var(--start)}
table{border-collapse:collapse;overflow-wrap:normal;font-size:.9rem;font-variant-numeric:tabular-nums}
.wide{overflow-x:auto}.f{overflow-wrap:anywhere;min-width:9em}
th,td{text-align:left;padding:3px 12px 3px 0;border-bottom:1px solid var(--grid);vertical-align:top}
th{font-weight:600}tbody th{font-weight:400}.r{text-align:right}td.r{white-space:nowrap}
.nats{width:100%;font-size:12px;line-height:1.2}
.nats td{text-align:right}.nats :is(th,td){border:0;padding:1px 5px 1px 0}.nats :is(th,td):last-child{padding:1px 0;width:40%}
.nats thead th{color:var(--faint);font-weight:400;text-align:right}
.nats thead th:first-child{text-align:left}.nats thead th:last-child{text-align:center}
.nats tbody th{padding-left:5px}.nats .g :is(th,td){padding-top:5px}.nats .g th{padding-left:0;font-weight:600}.nats .g span{font-weight:400}.nats .g i{top:calc(.2em + 4px)}
.nats .h{color:var(--faint);text-align:left}
details{margin:10px 0;border-top:1px solid var(--line);padding-top:8px}
summary{cursor:pointer;font-weight:600}
.chain{margin:18px 0}.chain>summary{font-size:1.1rem}.chain>div{scroll-margin-top:2.5em}
.line{margin:0;padding:4px 0}.line summary{display:grid;grid-template-columns:15em 120px 1fr;gap:2px 16px;font-weight:400}
.line summary span:first-child::before{content:"\25b8  "}.line[open] summary span:first-child::before{content:"\25be  "}
.line .card{max-width:460px;margin:8px 0}
mark{background:none;color:inherit;font-weight:700;border-bottom:3px solid var(--cis)}
@media screen{.prolines :is(td,th){white-space:nowrap}}
@media screen and (max-width:700px){th,td{padding-right:8px}.line summary{grid-template-columns:1fr 72px}
.line summary span:last-child{grid-column:1/-1}}
@media print{@page{size:A4;margin:14mm}
:root{color-scheme:light;--text:#000;--page:#fff;--card:#fff;--line:#c9ced4;--faint:#4a525c;--grid:#dfe3e7;
--trans:#0072b2;--start:#a3abb5;--link:#000}
body{padding:0;max-width:none;font-size:9.5pt}.nats{font-size:8.5pt}
.grid{gap:12px;grid-template-columns:1fr 1fr}
.card,figure,tr,.line{break-inside:avoid}h2,summary,.lead,.lead+p{break-after:avoid}.wide{overflow:visible}
details:not(.line)::details-content{content-visibility:visible}summary{list-style:none}}
)css";

}  // namespace zorvela
