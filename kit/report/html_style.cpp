// Class names of marks are short, as they stand in each of thousands of bars: c cis, t trans, u undecided,
// n none, p what every proline starts with, h hollow, va and vd a structure that agrees or disagrees; e end,
// m middle, s small, b bold.
#include "report/html_style.h"

namespace zorvela {

const char* const kHtmlStyle = R"css(
:root{color-scheme:light dark;--text:#1b1f24;--page:#fff;--card:#f6f7f8;--line:#c9ced4;--faint:#5b6470;
--grid:#dfe3e7;--cis:#d55e00;--trans:#0072b2;--undecided:#767676;--start:#a3abb5;--link:#00598c}
@media (prefers-color-scheme:dark){:root{--text:#e6e9ed;--page:#14171b;--card:#1c2026;--line:#3d454f;--faint:#a5afba;
--grid:#2e353d;--start:#68727e;--link:#7cc4f0}}
*{box-sizing:border-box}
body{margin:0 auto;padding:20px 16px 40px;max-width:1184px;background:var(--page);color:var(--text);
font:15px/1.45 system-ui,-apple-system,"Segoe UI",Roboto,"Helvetica Neue",Arial,sans-serif;overflow-wrap:anywhere}
h1{font-size:1.55rem;line-height:1.2;margin:0 0 6px}h2{font-size:1.2rem;margin:28px 0 8px}
h3{font-size:1rem;margin:0 0 6px}p{margin:0 0 8px}a{color:var(--link)}
.lead{font-size:1.1rem}.faint{color:var(--faint);font-size:.9rem}
.key{display:flex;flex-wrap:wrap;gap:4px 18px;margin:10px 0;padding:0;list-style:none}
svg.i{width:1em;height:1em;vertical-align:-.12em;overflow:visible}
.grid{display:grid;grid-template-columns:repeat(auto-fill,minmax(min(100%,320px),1fr));gap:20px;align-items:start}
figure,.card{min-width:0}.card{margin:0}
.card{background:var(--card);border:1px solid var(--line);border-radius:6px;padding:12px 12px 8px}
.card h3{font-size:.93rem}.card p{margin:0 0 6px}.card .say{min-height:2.9em}
figcaption{color:var(--faint);font-size:.85rem;margin-top:4px}
.strips{margin:6px 0 0}figure{margin:0 0 16px}
svg.w{display:block;width:100%;height:auto;max-width:460px}
.defs{position:absolute}
text{font-size:12px;fill:var(--text)}
.s{font-size:11px;fill:var(--faint)}.e{text-anchor:end}.m{text-anchor:middle}.b{font-weight:700}
.c{fill:var(--cis)}.t{fill:var(--trans)}.u{fill:var(--undecided)}.p{fill:var(--start)}
.n{fill:var(--page);stroke:var(--faint);stroke-width:1.5}
.h{fill:none;stroke:var(--faint);stroke-dasharray:2 2}
.va,.vd{fill:none;stroke:var(--faint)}.vd{stroke:var(--text);stroke-width:2.2}
.l,.z,.g,.d,.o{fill:none;stroke:var(--faint);stroke-width:1}.g{stroke:var(--grid)}.d{stroke-dasharray:5 4}
.o{stroke:var(--text);stroke-width:1.5}.k{fill:var(--text)}.v{fill:var(--page);stroke:var(--text);stroke-width:3}
.ec{fill:var(--cis);fill-opacity:.14;stroke:var(--cis);stroke-opacity:.45}
.et{fill:var(--trans);fill-opacity:.12;stroke:var(--trans);stroke-opacity:.45}
.rc,.rt,.ru,.rn{stroke-width:2.5}.rc{stroke:var(--cis)}.rt{stroke:var(--trans)}.ru{stroke:var(--undecided)}
.rn{stroke:var(--faint);stroke-dasharray:2 2}
.a0{fill:none;stroke:var(--line)}.a1,.a2,.a3,.a4{fill:var(--faint);fill-opacity:.25}
.a2{fill-opacity:.45}.a3{fill-opacity:.7}.a4{fill-opacity:1}
table{border-collapse:collapse;overflow-wrap:normal;font-size:.9rem;font-variant-numeric:tabular-nums}
.wide{overflow-x:auto}.f{overflow-wrap:anywhere;min-width:9em}
th,td{text-align:left;padding:3px 12px 3px 0;border-bottom:1px solid var(--grid);vertical-align:top}
th{font-weight:600}td.r,th.r,.prolines :is(th,td):is(:nth-child(4),:nth-child(5),:nth-child(6)){text-align:right}
details{margin:10px 0;border-top:1px solid var(--line);padding-top:8px}
summary{cursor:pointer;font-weight:600}
.chain{margin:18px 0}.chain>summary{font-size:1.1rem}
@media screen and (max-width:700px){.x,.prolines :is(th,td):is(:nth-child(2),:nth-child(3),:nth-child(5),:nth-child(8),:nth-child(9)),
.compared :is(th,td):nth-child(4){display:none}
th,td{padding-right:8px}.card .say{min-height:0}}
@media print{@page{size:A4;margin:14mm}
:root{color-scheme:light;--text:#000;--page:#fff;--card:#fff;--line:#c9ced4;--faint:#4a525c;--grid:#dfe3e7;
--start:#a3abb5;--link:#000}
body{padding:0;max-width:none;font-size:10.5pt}
.grid{gap:12px}
.card,figure,tr{break-inside:avoid}h2,h3,summary{break-after:avoid}.wide{overflow:visible}
details::details-content{content-visibility:visible}summary{list-style:none}}
)css";

}  // namespace zorvela
