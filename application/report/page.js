"use strict";
// Draws the story that stands in the page. Text from the story goes into the page as text alone.
(() => {
  const story = JSON.parse(document.getElementById("story").textContent);
  const byId = (id) => document.getElementById(id);
  const slider = byId("slider");

  const LOOKS = {
    "online": ["online", "✓"], "degraded": ["degraded", "!"], "failed": ["failed", "✕"],
    "offline": ["offline", "✕"], "absent": ["absent", "–"], "standby": ["standby", "…"],
    "initializing": ["busy", "…"], "terminating": ["busy", "…"], "coming up": ["busy", "…"],
    "cross device": ["unknown", "⇄"], "unknown": ["unknown", "?"], "connected": ["connected", ""],
    "other disk": ["none", ""], "empty": ["none", ""],
  };
  // From the worst on: of many states too short to be drawn, the worst is.
  const WORST_FIRST = ["failed", "absent", "offline", "degraded", "unknown", "cross device",
    "terminating", "standby", "initializing", "coming up", "", "online", "connected"];
  const GRAVE = ["failed", "absent", "offline"];
  const lookOf = (state) => LOOKS[state] || ["unknown", "?"];
  const signed = (state) => (lookOf(state)[1] + " " + state).trim();

  function element(name, className, text) {
    const made = document.createElement(name);
    if (className) made.className = className;
    if (text !== undefined) made.textContent = text;
    return made;
  }

  // "00:06.000", with hours where there are any.
  function clock(time) {
    const digits = (number, count) => String(number).padStart(count, "0");
    const rest = digits(Math.floor(time / 60000) % 60, 2) + ":" + digits(Math.floor(time / 1000) % 60, 2) +
      "." + digits(Math.floor(time) % 1000, 3);
    return time >= 3600000 ? Math.floor(time / 3600000) + ":" + rest : rest;
  }

  // The last place whose time is not later; -1 when there is none.
  function placeAt(times, time) {
    let first = 0;
    let last = times.length;
    while (first < last) {
      const middle = (first + last) >> 1;
      if (times[middle] <= time) first = middle + 1;
      else last = middle;
    }
    return first - 1;
  }
  const ascending = (times) => [...new Set(times)].sort((a, b) => a - b);

  const rows = [...document.querySelectorAll("#events tbody tr")];
  const rowTimes = rows.map((row) => Number(row.dataset.time));
  const eventTimes = ascending(rowTimes);
  const frameTimes = story.frames.map((frame) => frame[0]);
  const changeTimes = ascending(frameTimes.concat(eventTimes));

  // ---- The enclosures

  function boxOf(data) {
    const box = element("li", "box");
    const bay = data.bay > 0 ? "Bay " + data.bay : "Bay not known";
    box.dataset.bay = data.bay;
    box.dataset.state = data.state;
    if (GRAVE.includes(data.state)) box.dataset.grave = "";
    const head = element("p", "state");
    head.dataset.look = lookOf(data.state)[0];
    head.append(element("span", "", bay), element("span", "", signed(data.state)));
    box.append(head);
    const said = [bay + ": " + (data.disk ? "disk " : "") + data.state];
    const add = (className, text) => {
      if (!text) return;
      const line = element("p", className);
      line.append(element("bdi", "", text));
      box.append(line);
      said.push(text);
    };
    add("disk", data.disk);
    add("volume", data.volume);
    add("condition", data.condition);
    add("note", data.note);
    if (data.uuid) box.title = data.uuid;
    box.setAttribute("aria-label", said.join(", "));
    return box;
  }

  function boxesOf(boxes, label, className) {
    const list = element("ul", "boxes" + className);
    list.setAttribute("aria-label", label);
    list.append(...boxes.map(boxOf));
    return list;
  }

  function enclosureOf(picture) {
    const shown = element("article", "enclosure");
    shown.dataset.uid = picture.uid;
    const title = element("h3");
    title.append(element("bdi", "", picture.title), " ",
      element("small", "", (picture.bays.length ? picture.bays.length + " bays, " : "bays not known, ") + picture.uid));
    shown.append(title);
    if (!picture.up) {
      shown.append(element("p", "", "Coming up: its disks cannot be seen yet."));
      return shown;
    }
    if (picture.bays.length) shown.append(boxesOf(picture.bays, "Bays of " + picture.title, ""));
    if (picture.elsewhere.length) {
      shown.append(element("p", "", "Disks that no bay shows:"),
        boxesOf(picture.elsewhere, "Disks that no bay shows", " elsewhere"));
    }
    if (!picture.volumes.length) shown.append(element("p", "", "No RAID volumes."));
    return shown;
  }

  // ---- The strips

  const span = Math.max(story.end, frameTimes.length ? frameTimes[frameTimes.length - 1] * 1.02 : 0, 1);
  const percent = (time) => (100 * time / span) + "%";
  const COLUMNS = 500;

  // The runs as they are drawn: those that are too short for a column of their own share one.
  function drawnRuns(runs) {
    const drawn = [];
    runs.forEach(([from, state], place) => {
      const to = place + 1 < runs.length ? runs[place + 1][0] : span;
      const last = drawn[drawn.length - 1];
      const short = (to - from) * COLUMNS < span;
      if (short && last && last.short && (to - last.from) * COLUMNS < span) {
        last.to = to;
        last.count += 1;
        if (WORST_FIRST.indexOf(state) < WORST_FIRST.indexOf(last.state)) last.state = state;
      } else {
        drawn.push({from, to, state, short, count: 1});
      }
    });
    return drawn.filter((run) => run.state !== "");
  }

  function runOf(run) {
    const shown = element("div", "run");
    const share = 90 * (run.to - run.from) / span;  // about as many characters as there is room for
    const text = signed(run.state);
    shown.dataset.look = lookOf(run.state)[0];
    shown.dataset.state = run.state;
    shown.style.left = percent(run.from);
    shown.style.width = "calc(" + percent(run.to - run.from) + " - 1px)";
    shown.title = (run.count > 1 ? run.count + " changes, at worst " : "") + run.state + " from " + clock(run.from);
    if (share >= text.length) shown.append(element("span", "", text));
    else if (share >= 2) shown.append(element("span", "", lookOf(run.state)[1]));
    return shown;
  }

  // For those who do not see it: the beginning of a long story is enough.
  function spokenRuns(strip) {
    const spoken = strip.runs.slice(0, 20).map(([from, state]) => (state || "gone") + " from " + clock(from));
    if (strip.runs.length > spoken.length) spoken.push((strip.runs.length - spoken.length) + " more changes");
    return strip.label + ": " + spoken.join(", ");
  }

  function drawStrips() {
    const place = byId("strips");
    const states = new Set();
    for (const strip of story.strips) {
      const label = element("div", "label " + strip.kind + "-label");
      label.append(element("bdi", "", strip.label), " ", element("small", "", strip.detail));
      label.title = strip.label + " " + strip.detail;
      const track = element("div", "track");
      track.setAttribute("role", "img");
      track.setAttribute("aria-label", spokenRuns(strip));
      track.append(...drawnRuns(strip.runs).map(runOf), element("div", "cursor"));
      strip.runs.forEach(([, state]) => states.add(state));
      place.append(label, track);
    }
    const axis = element("div", "axis");
    const step = [1, 2, 5, 10, 20, 30, 60, 120, 300, 600, 1800, 3600, 7200, 21600, 43200]
      .map((seconds) => seconds * 1000).find((candidate) => span / candidate <= 8) || span / 6;
    for (let time = 0; time < span; time += step) {
      const tick = element("span", "", clock(time).replace(/\.000$/, ""));
      tick.style.left = percent(time);
      axis.append(tick);
    }
    place.append(element("div"), axis);
    for (const state of WORST_FIRST.filter((known) => known && states.has(known))) {
      const item = element("li");
      item.append(element("span", "", signed(state)));
      item.dataset.look = lookOf(state)[0];
      byId("legend").append(item);
    }
    byId("states").hidden = story.strips.length === 0;
  }

  // ---- The moment that is shown

  let shownFrame = -2;
  let marked = [];
  let cursors = [];

  function markEvents(time) {
    marked.forEach((row) => row.removeAttribute("aria-current"));
    const last = placeAt(rowTimes, time);
    const at = rowTimes[last];
    marked = [];
    for (let place = last; place >= 0 && rowTimes[place] === at; --place) marked.unshift(rows[place]);
    marked.forEach((row) => row.setAttribute("aria-current", "time"));
    const list = document.querySelector(".rows");
    if (!marked.length || !list) return "";
    const header = list.querySelector("thead").offsetHeight;
    if (marked[0].offsetTop - header < list.scrollTop ||
        marked[0].offsetTop + marked[0].offsetHeight > list.scrollTop + list.clientHeight) {
      list.scrollTop = marked[0].offsetTop - header;
    }
    return at === time ? marked.map((row) => row.querySelector(".what").textContent).join(". ") : "";
  }

  function drawFrame(time) {
    const frame = placeAt(frameTimes, time);
    if (frame === shownFrame) return;
    shownFrame = frame;
    const pictures = frame < 0 ? [] : story.frames[frame][1].map((number) => story.pictures[number]);
    const drawn = pictures.length ? pictures.map(enclosureOf) : [element("p", "", "No enclosure is connected.")];
    byId("enclosures").replaceChildren(...drawn);
  }

  function conditionAt() {
    const worse = [];
    for (const number of shownFrame < 0 ? [] : story.frames[shownFrame][1]) {
      for (const [name, level, state] of story.pictures[number].volumes) {
        if (state !== "online") worse.push(name + " (" + level + ") is " + state);
      }
    }
    return worse.length ? worse.join(", ") : "";
  }

  function show(time) {
    const moment = Math.min(Math.max(time, 0), story.end);
    slider.value = moment;
    byId("clock").textContent = clock(moment);
    drawFrame(moment);
    const said = markEvents(moment) || conditionAt() || "No change at this moment";
    byId("now").textContent = said;
    slider.setAttribute("aria-valuetext", clock(moment) + ": " + said);
    cursors.forEach((cursor) => { cursor.style.left = percent(moment); });
    byId("previous").disabled = !(eventTimes[0] < moment);
    byId("next").disabled = !(eventTimes[eventTimes.length - 1] > moment);
  }

  const shown = () => Number(slider.value);
  function step(times, forward) {
    const place = placeAt(times, shown());
    const before = times[place] === shown() ? place - 1 : place;
    const target = times[forward ? place + 1 : before];
    if (target !== undefined) show(target);
  }

  function onKey(event) {
    if (event.ctrlKey || event.altKey || event.metaKey) return;
    const onSlider = event.target === slider;
    const free = onSlider || event.target === document.body;
    const forward = {ArrowRight: true, ArrowUp: true, ArrowLeft: false, ArrowDown: false}[event.key];
    const sideways = event.key === "ArrowRight" || event.key === "ArrowLeft";
    if (forward !== undefined && (onSlider || (free && sideways))) step(changeTimes, forward);
    else if (event.key === "n" || event.key === "N") step(eventTimes, true);
    else if (event.key === "p" || event.key === "P") step(eventTimes, false);
    else if (onSlider && (event.key === "PageUp" || event.key === "PageDown")) step(eventTimes, event.key === "PageUp");
    else if (onSlider && event.key === "Home") show(0);
    else if (onSlider && event.key === "End") show(story.end);
    else return;
    event.preventDefault();
  }

  // ---- The log

  const PIECE = 1000;
  function setUpLog() {
    const section = byId("log");
    const details = section.querySelector("details");
    const body = section.querySelector("tbody");
    const more = section.querySelector("button");
    let next = 0;
    const drawMore = () => {
      const lines = story.log.slice(next, next + PIECE);
      next += lines.length;
      body.append(...lines.map(([time, level, category, text]) => {
        const row = element("tr");
        row.append(...[clock(time), level, category, text].map((cell) => element("td", "", cell)));
        return row;
      }));
      more.hidden = next >= story.log.length;
      more.textContent = "Show more (" + (story.log.length - next) + " left)";
    };
    details.querySelector("summary").textContent = "The library's log, " + story.log.length + " lines";
    details.addEventListener("toggle", () => { if (details.open && next === 0) drawMore(); });
    more.addEventListener("click", drawMore);
    section.hidden = story.log.length === 0;
  }

  // ---- All together

  document.documentElement.classList.add("scripted");
  slider.min = 0;
  slider.max = story.end;
  drawStrips();
  cursors = [...document.querySelectorAll(".cursor")];
  setUpLog();
  byId("bays").hidden = false;
  slider.addEventListener("input", () => show(shown()));
  byId("previous").addEventListener("click", () => step(eventTimes, false));
  byId("next").addEventListener("click", () => step(eventTimes, true));
  document.addEventListener("keydown", onKey);
  document.addEventListener("click", (event) => {
    const row = event.target.closest("tr[data-time], button[data-time]");
    if (row) show(Number(row.dataset.time));
    const track = event.target.closest(".track");
    if (!track) return;
    const box = track.getBoundingClientRect();
    show(Math.round(span * (event.clientX - box.left) / box.width));
  });
  document.querySelectorAll("button[data-time]").forEach((button) => { button.hidden = false; });
  show(story.start);
})();
