// The views, which of them is shown, and what is around them.
const Main = (() => {
  const errors = Data.problems.filter(({rank}) => rank < 2).length;
  const count = (number, isBad) => number === 0 ? null
    : Dom.make("span", {class: `count${isBad ? " bad" : ""}`}, Format.number(number));
  const problems = {name: "problems", label: "Problems", make: Problems.makeView,
    count: () => count(Data.problems.length, errors > 0)};
  const edits = {name: "edits", label: "Edits", make: Edits.makeView, count: () => count(Edits.count(), false)};
  const VIEWS = Data.isDifferences ? [
    {name: "differences", label: "Differences", make: FileView.makeDifferences}, problems, edits,
  ] : Data.isMany ? [
    {name: "settings", label: "Settings", make: Settings.makeView, count: () => count(Settings.count, false)},
    {name: "matrix", label: "Matrix", make: Matrix.makeView},
    {name: "files", label: "Files", make: Files.makeView, count: () => count(Data.files.length, false)},
    problems, edits,
  ] : [{name: "file=0", label: "File", make: () => FileView.view(0)}, edits];

  const main = document.getElementById("main");
  const search = document.getElementById("search");
  const tabs = new Map(VIEWS.map((view) => [view.name, Dom.make("a", {href: `#${view.name}`})]));
  const made = new Map();
  let current = null;

  function go(place) {
    location.hash = place;
  }

  function keep(name, make) {
    if (!made.has(name)) {
      made.set(name, make());
    }
    return made.get(name);
  }
  const inRange = (text, list) => /^\d+$/.test(text) && Number(text) < list.length;

  // The view that an address names, with what it is to show; the first one for any other address.
  function find(hash) {
    const place = new URLSearchParams(hash.slice(1));
    const [file, key, setting] = ["file", "key", "setting"].map((name) => place.get(name) ?? "");
    if (!Data.isDifferences && inRange(file, Data.files)) {
      return {tab: Data.isMany ? "files" : "file=0", view: FileView.view(Number(file)),
        key: inRange(key, Data.keys) ? Number(key) : null};
    }
    if (Data.isMany && inRange(setting, Data.keys) && Data.keys[setting].kind !== Data.VERSION) {
      return {tab: "settings", view: Settings.makeOne(Number(setting)), key: null};
    }
    const named = VIEWS.find(({name}) => `#${name}` === hash) ?? VIEWS[0];
    return {tab: named.name, view: keep(named.name, named.make), key: null};
  }

  function show() {
    const {tab, view, key} = find(location.hash);
    for (const [name, link] of tabs) {
      if (name === tab) {
        link.setAttribute("aria-current", "page");
      } else {
        link.removeAttribute("aria-current");
      }
    }
    if (current !== view) {
      current = view;
      search.value = "";
      Dom.fill(main, view.element);
      view.search("");
      scrollTo(0, 0);
    }
    view.show?.(key);
  }

  function drawTabs() {
    VIEWS.forEach((view) => Dom.fill(tabs.get(view.name), view.label, " ", view.count?.() ?? null));
  }

  // Light or dark: as the system says, until the reader chooses.
  function setUpTheme() {
    const button = document.getElementById("theme");
    const system = matchMedia("(prefers-color-scheme: dark)");
    const isDark = () => (document.documentElement.dataset.theme ?? (system.matches ? "dark" : "light")) === "dark";
    const draw = () => button.setAttribute("aria-pressed", String(isDark()));
    button.addEventListener("click", () => {
      document.documentElement.dataset.theme = isDark() ? "light" : "dark";
      draw();
    });
    system.addEventListener("change", draw);
    draw();
  }

  function setUpSearch() {
    let timer = 0;
    search.addEventListener("input", () => {
      clearTimeout(timer);
      timer = setTimeout(() => current.search(search.value), 60);
    });
    addEventListener("keydown", (event) => {
      const isTyping = event.target.matches("input, textarea, select");
      if (event.key === "/" && !isTyping && !event.ctrlKey && !event.altKey && !event.metaKey) {
        event.preventDefault();
        search.focus();
      } else if (event.key === "Enter" && event.target === search) {
        main.querySelector(".grid")?.focus();
      }
    });
  }

  function start() {
    document.getElementById("title").append(...Format.visible(Data.raw.title));
    const unread = Data.files.length - Data.readable;
    Dom.fill(document.getElementById("subtitle"), Format.counted(Data.files.length, "file", "files"),
      unread === 0 ? null : [" \u00b7 ", Dom.make("a", {href: Data.isMany ? "#problems" : "#file=0", class: "bad"},
        `${Format.number(unread)} could not be read`)],
      " \u00b7 made ", Format.date(Data.raw.made) ?? Data.raw.made, " with ", Data.raw.program);
    document.getElementById("tabs").append(...tabs.values());
    document.getElementById("skip").addEventListener("click", (event) => {
      event.preventDefault();
      main.focus();
    });
    Edits.onChange(drawTabs);
    drawTabs();
    setUpTheme();
    setUpSearch();
    addEventListener("hashchange", show);
    show();
  }

  return {go, start};
})();
Main.start();
