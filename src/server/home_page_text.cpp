// SPDX-License-Identifier: MIT
#include "server/home_page_text.h"

namespace raincast {

const char* const kHomePageText = R"html(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Raincast radar</title>
<style>
:root { color-scheme: light; }
* { box-sizing: border-box; }
body { margin: 0; font: 15px/1.45 system-ui, "DejaVu Sans", sans-serif; color: #1c2430; background: #f3f4f1; }
header, main, footer { max-width: 1280px; margin: 0 auto; padding: 0 20px; }
header { padding-top: 18px; display: flex; flex-wrap: wrap; align-items: baseline; gap: 4px 16px; }
h1 { font-size: 22px; margin: 0; }
.note { margin: 0; padding: 2px 10px; border-radius: 4px; background: #ffe9a8; }
main { display: flex; flex-wrap: wrap; gap: 20px; padding-top: 14px; align-items: flex-start; }
section { background: #fff; border: 1px solid #d5d8d2; border-radius: 6px; padding: 14px; }
#picture { flex: 0 1 630px; }
#places { flex: 1 1 420px; min-width: 300px; }
h2 { font-size: 17px; margin: 0 0 8px; }
h2 small { font-weight: normal; color: #56606c; }
nav { display: flex; flex-wrap: wrap; gap: 6px; margin-bottom: 10px; }
nav a { padding: 3px 9px; border: 1px solid #c6cbd1; border-radius: 4px; color: inherit; text-decoration: none; }
nav a.on { background: #22588a; border-color: #22588a; color: #fff; }
#stack { position: relative; aspect-ratio: 600 / 550; background: #b9c3b0; overflow: hidden; }
#stack img { position: absolute; inset: 0; width: 100%; height: 100%; }
#stack img.bad { display: none; }
#time { position: absolute; right: 6px; bottom: 6px; padding: 1px 7px; background: #fffd; font-variant-numeric: tabular-nums; }
#age { min-height: 1.4em; margin: 8px 0 0; color: #56606c; font-size: 13.5px; }
#age.old { color: #a3301c; }
#warnings { margin: 8px 0 0; padding: 0; list-style: none; font-size: 13.5px; }
#warnings li { margin: 0 0 8px; padding: 4px 10px; border-left: 4px solid #a3301c; background: #f7f3ee; }
#warnings b, #warnings span { display: block; }
#warnings span { white-space: pre-line; }
#scale { display: flex; margin-top: 8px; font-size: 11px; font-variant-numeric: tabular-nums; }
#scale span { flex: 1; border-top: 12px solid; text-align: center; }
#scale b { font-weight: normal; padding: 9px 0 0 6px; }
fieldset { border: 0; margin: 10px 0 0; padding: 0; display: flex; flex-wrap: wrap; gap: 4px 16px; }
label { white-space: nowrap; }
svg { width: 100%; height: auto; display: block; background: #eef1ee; }
svg path { fill: none; stroke: #9aa39b; stroke-width: .8; vector-effect: non-scaling-stroke; }
svg circle { fill: #22588a; stroke: #fff; stroke-width: 1; }
svg a:hover circle, svg a:focus circle { fill: #d07a00; }
svg a.on circle { fill: #c3271b; }
#list { display: grid; grid-template-columns: repeat(auto-fill, minmax(14em, 1fr)); margin: 12px 0 0; padding: 0; list-style: none; max-height: 400px; overflow-y: auto; font-size: 13.5px; }
#list a { color: #22588a; text-decoration: none; }
#list a:hover { text-decoration: underline; }
#list small { color: #56606c; }
#list a.on { font-weight: bold; color: #c3271b; }
footer { padding: 16px 20px 28px; color: #56606c; font-size: 13px; }
footer a { color: inherit; }
</style>
</head>
<body>
<header><h1>Raincast radar</h1>@NOTE@</header>
<main>
<section id="picture">
<h2><span id="site"></span> <small id="what"></small></h2>
<nav id="products"></nav>
<div id="stack"><span id="time"></span></div>
<p id="age" role="status"></p>
<div id="scale"></div>
<fieldset id="layers"></fieldset>
<ul id="warnings" aria-label="Warnings"></ul>
<noscript><p>Without scripts: each site of the list leads to its newest frames.</p></noscript>
</section>
<section id="places">
<h2>Sites</h2>
<svg viewBox="0 0 620 390" role="group" aria-label="Map of the radar sites"><path d="@STATES@"/>@DOTS@</svg>
<ul id="list">@LIST@</ul>
</section>
</main>
<footer>
Server: <a href="status">status</a>, <a href="ridge/">image tree</a>. @CREDIT@
Map data: U.S. Census Bureau (borders), GSHHG by P. Wessel and W. H. F. Smith (shores, rivers), ETOPO5 (relief),
<a href="https://www.geonames.org/">GeoNames</a>, CC BY 4.0 (places).
</footer>
<script>
"use strict";
const sites = @SITES@;
const scales = @SCALES@;
const speed = @SPEED@; // of the weather's clock
let detail = @DETAIL@; // 2: there are sharp pictures
const products = {N0R: "Base reflectivity", NCR: "Composite", N0Z: "Long range", N1P: "1 hour precipitation",
  NTP: "Total precipitation", N0V: "Velocity", N0S: "Storm relative velocity"};
const layers = {
  Topo: ["Topo", true, (s, r) => `ridge/Overlays/Topo/${r}/${s}_Topo_${r}.jpg`],
  Rivers: ["Rivers", true, (s, r) => `ridge/Overlays/Rivers/${r}/${s}_Rivers_${r}.gif`],
  Frame: ["", true, null],
  Counties: ["Counties", true, (s, r) => `weather_radar/basemaps/${s}_County_${r}.gif`],
  Highways: ["Highways", true, (s, r) => `ridge/Overlays/Highways/${r}/${s}_Highways_${r}.gif`],
  Warnings: ["Warnings", true, (s, r) => `ridge/Warnings/${r}/${s}_Warnings_0.gif`],
  Cities: ["Cities", true, (s, r) => `weather_radar/basemaps/${s}_City_${r}.gif`],
};
const byId = id => document.getElementById(id);
const images = {};
let site = "TLX", product = "N0R", frames = [], shown = 0, turn = 0;

// A picture, and the same with twice the pixels for screens that have them: the browser takes one. Where
// the sharp one is missing the other comes; where a layer's is, all are.
const lacking = new Set();
const bare = path => path.split("?")[0];
const sharpOf = path => path.replace(/^(ridge|weather_radar)\//, "$1/x2/");
const width = () => byId("stack").clientWidth + "px";
function use(image, path) {
  image.sizes = width();
  image.srcset = detail > 1 && !lacking.has(bare(path)) ? `${path} 600w, ${sharpOf(path)} 1200w` : "";
  image.src = path;
}
function orDescribed(image, isLayer) {
  const path = image.getAttribute("src");
  if (!image.srcset) return image.classList.add("bad");
  lacking.add(bare(path));
  if (isLayer) detail = 1;
  use(image, path);
}
addEventListener("resize", () => Object.values(images).forEach(image => image.sizes = width()));

for (const [key, [name, on]] of Object.entries(layers)) {
  const image = images[key] = new Image();
  image.alt = "";
  image.onerror = () => orDescribed(image, key !== "Frame" && key !== "Warnings");
  image.onload = () => image.classList.remove("bad");
  byId("stack").insertBefore(image, byId("time"));
  if (!name) continue;
  const label = document.createElement("label"), box = document.createElement("input");
  box.type = "checkbox";
  box.checked = on;
  box.onchange = () => image.hidden = !box.checked;
  label.append(box, " ", name);
  byId("layers").append(label);
}
for (const [code, name] of Object.entries(products)) {
  const link = document.createElement("a");
  link.textContent = name;
  link.dataset.code = code;
  byId("products").append(link);
}

const folder = () => `ridge/RadarImg/${product}/${site}/`;

function show() {
  if (!frames.length) return;
  const name = frames[shown];
  use(images.Frame, folder() + name);
  const [, y, m, d, h, min] = name.match(/_(\d{4})(\d\d)(\d\d)_(\d\d)(\d\d)_/);
  byId("time").textContent = new Date(Date.UTC(y, m - 1, d, h, min))
    .toLocaleString([], {dateStyle: "medium", timeStyle: "short"});
}

const words = {"no-product": "This radar makes no such product.", "radar-down": "The radar itself is down.",
  provider: "The provider does not answer.", network: "The server has no network."};

function ageOf(time, now) {
  const minutes = Math.max(0, Math.round((Date.parse(now) - Date.parse(time)) / 60000));
  return minutes < 120 ? `${minutes} min` : `${Math.round(minutes / 60)} h`;
}

function showAges(status) {
  const newest = status.newest || {}, wanted = (status.wanted || {})[site] || {};
  const time = (newest[site] || {})[product], known = wanted[product] || {};
  const age = time ? `Newest frame: ${ageOf(time, status.now)} old` : "";
  const from = time && known.provider ? `, from ${known.provider}` : "";
  byId("age").textContent = [age && age + from + ".", words[known.state]].filter(Boolean).join(" ");
  byId("age").className = time && Date.parse(status.now) - Date.parse(time) > 720000 ? "old" : "";
  for (const link of document.querySelectorAll("#list a")) {
    const times = Object.values(newest[link.dataset.site] || {}).sort();
    let mark = link.querySelector("small");
    if (!mark) link.append(mark = document.createElement("small"));
    mark.textContent = times.length ? " " + ageOf(times[times.length - 1], status.now) : "";
    const asked = Object.values((status.wanted || {})[link.dataset.site] || {});
    link.title = [...new Set(asked.map(one => one.provider))].filter(Boolean).join(", ");
  }
}

// The weather's clock goes on between two looks at it.
let weather = null;
function showReplay() {
  if (!byId("replay") || !weather) return;
  const now = new Date(weather.now + speed * (Date.now() - weather.at)).toISOString();
  byId("replay").textContent = `Replay of ${now.slice(0, 10)} ${now.slice(11, 16)} UTC` +
    (speed > 1 ? `, ${speed} times as fast` : "");
}

function showWarnings(found) {
  byId("warnings").replaceChildren(...(found.warnings || []).map(warning => {
    const row = document.createElement("li"), until = warning.end ? new Date(warning.end) : null;
    const title = document.createElement("b");
    title.textContent = warning.event + (until ? " until " + until.toLocaleString([], {timeStyle: "short"}) : "") +
      (warning.office ? ", " + warning.office : "");
    row.append(title);
    for (const text of [warning.headline, warning.instruction]) {
      if (!text) continue;
      const line = document.createElement("span");
      line.textContent = text;
      row.append(line);
    }
    row.title = warning.text;
    return row;
  }));
}

async function refresh() {
  const mine = ++turn;
  const page = await fetch(folder()).then(answer => answer.text(), () => "");
  if (mine !== turn) return;
  frames = [...new Set(page.match(/[A-Z]{3}_\d{8}_\d{4}_[A-Z0-9]{3}\.gif/g) || [])].sort().slice(-12);
  shown = frames.length - 1;
  if (frames.length) show(); else {
    images.Frame.classList.add("bad");
    byId("time").textContent = "No frames";
  }
  for (const name of frames) {
    const image = new Image();
    image.onerror = () => orDescribed(image, false);
    use(image, folder() + name);
  }
  const warnings = layers.Warnings[2](site, product === "N0Z" ? "Long" : "Short");
  lacking.clear(); // what was missing may be there by now
  use(images.Warnings, warnings + "?" + Date.now());
  const read = path => fetch(path).then(answer => answer.ok ? answer.json() : {}).catch(() => ({}));
  const [status, texts] = await Promise.all([read("status"), read(warnings.replace(".gif", ".json"))]);
  if (mine !== turn) return;
  if (status.now) weather = {now: Date.parse(status.now), at: Date.now()};
  showReplay();
  showAges(status);
  showWarnings(texts);
}

function choose() {
  const [s, p] = location.hash.slice(1).split("/");
  if (sites[s]) site = s;
  if (products[p]) product = p;
  const range = product === "N0Z" ? "Long" : "Short";
  for (const [key, [, , path]] of Object.entries(layers)) {
    // Letters would be half as large.
    if (key === "Cities") images[key].src = path(site, range);
    else if (path) use(images[key], path(site, range));
  }
  byId("site").textContent = `${site} ${sites[site]}`;
  byId("what").textContent = products[product];
  byId("scale").replaceChildren(...scales[product].levels.map(([colour, text]) => {
    const level = document.createElement("span");
    level.style.borderTopColor = colour;
    level.textContent = text;
    return level;
  }), Object.assign(document.createElement("b"), {textContent: scales[product].unit}));
  for (const link of byId("products").children) {
    link.href = `#${site}/${link.dataset.code}`;
    link.className = link.dataset.code === product ? "on" : "";
  }
  for (const link of document.querySelectorAll("[data-site]")) {
    link.classList.toggle("on", link.dataset.site === site);
    link.setAttribute("href", `#${link.dataset.site}/${product}`);
  }
  refresh();
}

addEventListener("hashchange", choose);
choose();
setInterval(refresh, Math.max(5000, 60000 / speed));
setInterval(showReplay, 1000);
let pause = 0;
setInterval(() => {
  if (frames.length < 2 || pause-- > 0) return;
  shown = (shown + 1) % frames.length;
  if (shown === frames.length - 1) pause = 5;
  show();
}, 300);
</script>
</body>
</html>
)html";

} // namespace raincast
