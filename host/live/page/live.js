// Keeps the live page up to date. The program makes all markup; this puts it in its place, and does what only a browser
// can: filters, the history of a channel beside the page, and telling that the page is out of date.
"use strict";

const longestSilence = 40000; // milliseconds; the program says something every 15 seconds
const plotsAgainAfter = 5000;
const byId = id => document.getElementById(id);
const live = byId("live");
const history_ = byId("history");
let source = null;
let heard = Date.now();
let tried = 0; // when the connection was made anew last
let plots = { wanted: false, visible: false, at: 0 };
let isNews = false; // rather than what the program tells whoever connects
let shown = null; // the number of the channel whose history is open
let counted = Date.now();

function pageOf(html) {
    return new DOMParser().parseFromString(html, "text/html");
}

async function load(address) {
    const answer = await fetch(address, { cache: "no-store", credentials: "same-origin" });
    if (!answer.ok) {
        throw new Error(address + ": " + answer.status);
    }
    return pageOf(await answer.text());
}

// What a screen reader says: a channel that became bad or good again, once.
function say(row, before) {
    const verdict = row.dataset.verdict;
    if (before !== verdict && (verdict !== "pass" || before !== "awaited")) {
        byId("said").textContent = row.cells[0].textContent + ": " + row.cells[1].textContent;
    }
}

function put(id, html) {
    const old = byId(id);
    if (!old) {
        return false;
    }
    const template = document.createElement("template");
    template.innerHTML = html;
    const fresh = template.content.firstElementChild;
    const focused = old.contains(document.activeElement) ? document.activeElement.id : "";
    old.replaceWith(fresh);
    if (focused && byId(focused)) {
        byId(focused).focus({ preventScroll: true });
    }
    if (fresh.dataset.verdict && isNews) {
        say(fresh, old.dataset.verdict);
        fresh.classList.add("fresh");
    }
    return true;
}

// Which rows are seen beyond what the style sheet hides by verdict, and which one is measured.
function mark() {
    const wanted = byId("label").value.trim().toLowerCase();
    const measured = "c" + byId("now").dataset.channel;
    let seen = 0;
    for (const row of live.querySelectorAll("tr[data-verdict]")) {
        row.hidden = !row.cells[0].textContent.toLowerCase().includes(wanted);
        row.classList.toggle("measuring", row.id === measured);
        seen += row.getClientRects().length > 0 ? 1 : 0;
    }
    const all = live.querySelectorAll("tr[data-verdict]").length;
    const text = seen === all ? "" : seen + " of " + all + " channels";
    if (byId("count").textContent !== text) {
        byId("count").textContent = text;
    }
}

function filter(show, label) {
    live.dataset.show = show;
    byId("label").value = label;
    byId("filters").hidden = false;
    for (const button of byId("filters").querySelectorAll("button")) {
        button.setAttribute("aria-pressed", String(button.dataset.show === show));
    }
    const kept = new URLSearchParams({ show, label });
    history.replaceState(null, "", show === "all" && !label ? location.pathname : "#" + kept);
    mark();
}

// The whole page anew: the program was started again, or has other channels.
async function refresh() {
    const page = await load("/");
    const { show } = live.dataset;
    const label = byId("label").value;
    const focused = document.activeElement.id;
    live.replaceChildren(...page.getElementById("live").childNodes);
    live.dataset.version = page.getElementById("live").dataset.version;
    document.title = page.title;
    filter(show, label);
    watchPlots();
    if (focused && byId(focused)) {
        byId(focused).focus({ preventScroll: true });
    }
}

async function drawPlots() {
    if (!plots.wanted || !plots.visible || Date.now() - plots.at < plotsAgainAfter) {
        return;
    }
    plots.wanted = false;
    plots.at = Date.now();
    const fresh = (await load("/plots")).getElementById("plots");
    const scrolled = [...byId("plots").querySelectorAll("figure")].map(figure => figure.scrollLeft);
    byId("plots").replaceChildren(...fresh.childNodes);
    byId("plots").querySelectorAll("figure").forEach((figure, i) => { figure.scrollLeft = scrolled[i] || 0; });
}

function watchPlots() {
    new IntersectionObserver(entries => {
        plots.visible = entries.some(entry => entry.isIntersecting);
        drawPlots().catch(() => { plots.wanted = true; });
    }).observe(byId("plots"));
}

// Opens the history of a channel, or shows what has become of the one that is open.
async function showHistory(number, isAgain) {
    const page = await load("/channel/" + number);
    if (isAgain && !(history_.open && shown === number)) {
        return; // closed meanwhile
    }
    const close = document.createElement("button");
    close.type = "button";
    close.className = "close";
    close.textContent = "Close";
    close.addEventListener("click", () => history_.close());
    const hadFocus = history_.open && history_.contains(document.activeElement);
    const top = history_.scrollTop;
    page.querySelector(".links").remove();
    history_.replaceChildren(close, ...page.getElementById("channel").childNodes);
    shown = number;
    if (!history_.open) {
        history_.showModal();
    } else if (hadFocus) {
        close.focus({ preventScroll: true });
    }
    history_.scrollTop = top;
    // Where there is no room for all, the latest is seen.
    history_.querySelectorAll("figure").forEach(figure => { figure.scrollLeft = figure.scrollWidth; });
}

function hear() {
    heard = Date.now();
    byId("stale").hidden = true;
}

function follow() {
    let isKnown = true;
    isNews = false;
    source = new EventSource("/events?after=" + live.dataset.version);
    source.addEventListener("part", event => {
        hear();
        const end = event.data.indexOf("\n");
        const id = event.data.slice(0, end);
        isKnown = put(id, event.data.slice(end + 1)) && isKnown;
        if (id === "c" + shown && history_.open) {
            showHistory(shown, true).catch(() => {});
        }
    });
    source.addEventListener("end", event => {
        hear();
        counted = Date.now();
        const isAnew = event.lastEventId.split("/")[0] !== live.dataset.version.split("/")[0];
        live.dataset.version = event.lastEventId;
        if (isAnew || !isKnown) {
            isKnown = true;
            refresh().catch(() => { isKnown = false; });
        } else {
            mark();
        }
        plots.wanted = plots.wanted || event.data === "rows";
        isNews = true;
    });
    source.addEventListener("alive", hear);
    source.addEventListener("error", () => { isNews = false; });
}

function tell() {
    const isLost = source.readyState !== EventSource.OPEN;
    const silence = Date.now() - heard;
    if (silence > longestSilence || (isLost && silence > 3000)) {
        const text = "This page is out of date: " + (isLost ? "the connection is lost" : "nothing was heard") + " since " +
            new Date(heard).toLocaleTimeString() + ". It is tried again.";
        if (byId("stale").textContent !== text || byId("stale").hidden) {
            byId("stale").textContent = text;
            byId("stale").hidden = false;
        }
    }
    // The browser itself goes on trying, but not where it was refused or where nothing tells it of the loss.
    const isRefused = source.readyState === EventSource.CLOSED;
    if ((isRefused || silence > 2 * longestSilence) && Date.now() - tried > (isRefused ? 5000 : longestSilence)) {
        tried = Date.now();
        source.close();
        follow();
    }
}

function countDown() {
    const passed = (Date.now() - counted) / 1000;
    for (const left of live.querySelectorAll(".left")) {
        const seconds = Math.max(0, Math.round(left.dataset.left - passed));
        const two = number => String(number).padStart(2, "0");
        const hours = Math.floor(seconds / 3600), minutes = Math.floor(seconds / 60) % 60;
        left.textContent = (hours ? hours + ":" + two(minutes) : minutes) + ":" + two(seconds % 60);
    }
}

live.addEventListener("click", event => {
    const link = event.target.closest("a[href^='/channel/']");
    const button = event.target.closest("#filters button");
    if (link && !event.ctrlKey && !event.metaKey && !event.shiftKey) {
        event.preventDefault();
        showHistory(Number(link.pathname.split("/").pop()), false).catch(() => { location.href = link.href; });
    } else if (button) {
        filter(button.dataset.show, byId("label").value);
    }
});
live.addEventListener("input", event => {
    if (event.target.id === "label") {
        filter(live.dataset.show, event.target.value);
    }
});
history_.addEventListener("close", () => {
    const link = byId("l" + shown);
    shown = null;
    if (link && (document.activeElement === document.body || history_.contains(document.activeElement))) {
        link.focus({ preventScroll: true });
    }
});
addEventListener("pagehide", () => source.close());
addEventListener("pageshow", event => { if (event.persisted) { follow(); } });

const kept = new URLSearchParams(location.hash.slice(1));
const known = ["all", "fail", "warning"];
filter(known.includes(kept.get("show")) ? kept.get("show") : "all", kept.get("label") || "");
watchPlots();
follow();
setInterval(() => {
    tell();
    countDown();
    drawPlots().catch(() => { plots.wanted = true; });
}, 1000);
