#pragma once

namespace tvn2x {

/// The style sheet of a report. Class names are those of Chart and of the tables. Print is always light.
constexpr const char* htmlStyle = R"css(
:root { color-scheme: light dark; --paper: #ffffff; --ink: #1b1b1b; --soft: #5c5c5c; --rule: #d0d0d0; --stripe: #f4f5f7;
  --pass: #0072B2; --warning: #B87A00; --unmeasured: #777777; --error: #A8488A; --fail: #C04A00;
  --warning-fill: #E69F00; --error-fill: #CC79A7; --fail-fill: #D55E00; --fit: #009E73; }
@media screen and (prefers-color-scheme: dark) { :root { --paper: #15181c; --ink: #e8e8e8; --soft: #a5a9ae; --rule: #3b4046;
  --stripe: #1d2126; --pass: #56B4E9; --warning: #E69F00; --unmeasured: #999999; --error: #CC79A7; --fail: #FF7F2A;
  --fail-fill: #FF7F2A; --fit: #2BC79B; } }
* { box-sizing: border-box; }
body { margin: 0 auto; padding: 1.2rem; max-width: 82rem; background: var(--paper); color: var(--ink);
  font: 15px/1.45 system-ui, "Segoe UI", "DejaVu Sans", sans-serif; }
h1, td, .verdict, figcaption { overflow-wrap: anywhere; }
h1 { font-size: 1.5rem; margin: 0 0 .6rem; } h2 { font-size: 1.15rem; margin: 1.8rem 0 .5rem; }
.band { padding: .5rem 1rem; margin: 0 0 .6rem; border: 2px dashed var(--soft); font-weight: 600; overflow-wrap: anywhere; }
.verdict { font-size: 1.1rem; padding: .7rem 1rem; margin: 0 0 1rem; border: 1px solid var(--rule); border-left: .6rem solid; }
.verdict.pass { border-left-color: var(--pass); } .verdict.warning { border-left-color: var(--warning-fill); }
.verdict.fail { border-left-color: var(--fail-fill); } .verdict.error { border-left-color: var(--error-fill); }
.verdict.unmeasured { border-left-color: var(--unmeasured); }
table { border-collapse: collapse; width: 100%; font-variant-numeric: tabular-nums; }
th, td { padding: .22rem .5rem; text-align: left; vertical-align: top; border-bottom: 1px solid var(--rule); }
thead th { border-bottom: 2px solid var(--soft); vertical-align: bottom; font-weight: 600; }
td.number, th.number { text-align: right; } td.name { min-width: 12rem; max-width: 18rem; }
.facts { width: auto; } .facts th { font-weight: 400; color: var(--soft); white-space: nowrap; } .facts td { word-break: break-word; white-space: pre-line; }
.wide { overflow-x: auto; } .wide table { font-size: .7rem; } .wide th, .wide td { padding: .18rem .26rem; }
.wide tbody tr:nth-child(even) { background: var(--stripe); } .wide td { white-space: nowrap; }
.wide td.label { white-space: normal; min-width: 5rem; max-width: 12rem; }
td.pass, td.warning, td.fail, td.error, td.unmeasured { font-weight: 600; overflow-wrap: normal; }
td.pass { color: var(--pass); } td.warning { color: var(--warning); } td.fail { color: var(--fail); }
td.error { color: var(--error); } td.unmeasured { color: var(--unmeasured); } td.number.pass { font-weight: 400; color: inherit; }
.plots { display: grid; grid-template-columns: repeat(auto-fit, minmax(min(34rem, 100%), 1fr)); gap: 1rem 2rem; }
figure { margin: 0; } figcaption { font-size: .85rem; color: var(--soft); }
svg { width: 100%; height: auto; display: block; } svg.mark { display: inline; width: 1em; height: 1em; }
svg text[fill=currentColor] { paint-order: stroke; stroke: var(--paper); stroke-width: 3px; stroke-linejoin: round; }
svg .grid { stroke: var(--rule); } svg .fit { stroke: var(--fit); }
svg .pass { fill: var(--pass); } svg .pass-line { stroke: var(--pass); }
svg .warning { fill: var(--warning-fill); } svg .warning-line { stroke: var(--warning-fill); }
svg .fail { fill: var(--fail-fill); } svg .fail-line { stroke: var(--fail-fill); }
svg .error { fill: var(--error-fill); } svg .unmeasured-line { stroke: var(--unmeasured); }
@media screen and (max-width: 44rem) { body { padding: .7rem; } h1 { font-size: 1.2rem; } th, td { padding: .22rem .3rem; } td.name { min-width: 7rem; }
  .facts th, .facts td { display: block; padding: 0; border: 0; } .facts td { padding-bottom: .35rem; }
  figure { overflow-x: auto; } figure svg { width: 40rem; } figcaption { position: sticky; left: 0; } }
@page { size: A4; margin: 14mm 12mm; @bottom-right { content: counter(page) " / " counter(pages); font: 8pt sans-serif; } }
@page wide { size: A4 landscape; margin: 10mm; }
@media print { :root { color-scheme: light; } body { padding: 0; max-width: none; font-size: 9.5pt; }
  h2 { break-after: avoid; } tr, figure { break-inside: avoid; } thead { display: table-header-group; }
  .frequency { break-before: page; } .plots { display: block; } figure { margin-bottom: 5mm; } figure svg { width: 92%; }
  .wide { page: wide; break-before: page; overflow: visible; } .wide table { font-size: 6.6pt; }
  .wide th, .wide td { padding: .6mm .8mm; } }
)css";

}  // namespace tvn2x
