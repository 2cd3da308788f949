// How the values of each setting are distributed over many files.
const Settings = (() => {
  const SEGMENTS = 12;

  // A setting in which few files differ comes before one in which many differ, then those that have no usual value, then
  // those that are the same everywhere.
  const rank = ({outliers, varies}) => varies ? 1e9 : outliers === 0 ? 2e9 : outliers;
  const all = Data.distributions.filter(({key}) => Data.keys[key].kind !== Data.VERSION)
    .sort((one, other) => rank(one) - rank(other));

  // The states of a key with the number of files in each: the rarest first.
  function statesOf({count, missing}) {
    const states = [...count].map(([state, files]) => ({state, files}));
    if (missing > 0) {
      states.push({state: Data.MISSING, files: missing});
    }
    return states.sort((one, other) => one.files - other.files);
  }
  function kindOf(state, {common, varies}) {
    return state === Data.MISSING ? "missing" : varies ? "varied" : state === common ? "common" : "rare";
  }

  // One bar for all files, the outliers at its beginning.
  function bar(distribution) {
    const states = statesOf(distribution);
    const shown = states.length > SEGMENTS ? states.slice(-SEGMENTS) : states;
    const rest = states.slice(0, states.length - shown.length).reduce((sum, {files}) => sum + files, 0);
    const segments = [...(rest > 0 ? [{state: null, files: rest}] : []), ...shown];
    return Dom.make("span", {class: "bar", "aria-hidden": "true"}, segments.map(({state, files}) => {
      const segment = Dom.make("span", {class: `segment ${kindOf(state, distribution)}`});
      segment.style.flexGrow = files;
      return segment;
    }));
  }

  function summary({key, count, missing, outliers, varies}) {
    if (Data.keys[key].isHidden) {
      return Dom.make("span", {}, Dom.make("span", {class: "badge muted"}, "values are hidden"),
        missing > 0 ? ` ${Format.counted(missing, "file misses", "files miss")} it` : "");
    }
    if (outliers === 0 && !varies) {
      return Dom.make("span", {class: "badge good"}, "the same everywhere");
    }
    const parts = [Format.counted(count.size, "value", "values")];
    if (missing > 0) {
      parts.push(`${Format.counted(missing, "file misses", "files miss")} it`);
    }
    return Dom.make("span", {}, varies ? Dom.make("span", {class: "badge varies"}, "varies")
      : Dom.make("span", {class: "badge warn"}, Format.counted(outliers, "file differs", "files differ")),
      ` ${parts.join(", ")}`);
  }

  function makeView() {
    let query = "";
    let found = all;
    const filters = [
      ["all", "all settings", () => true],
      ["differ", "settings that differ", ({outliers, varies}) => varies || outliers > 0],
      ["missing", "settings that a file misses", ({missing}) => missing > 0],
      ["policies", "of policies", ({key}) => Data.entries[Data.keys[key].entry].taskId === null],
      ["tasks", "of tasks", ({key}) => Data.entries[Data.keys[key].entry].taskId !== null],
    ];
    let [, , passes] = filters[0];
    const grid = Grid.make({
      label: "Settings, those in which few files differ first", className: "settings",
      columns: ["Policy or task", "Setting", "Files by value", "Summary"],
      count: () => found.length,
      cells: (row) => {
        const {key} = found[row];
        return [Dom.make("span", {class: "muted"}, Format.visible(Data.entryLabel(Data.keys[key].entry), 200)),
          Dom.make("span", {class: "strong"}, Format.visible(Data.keyName(key), 200)), bar(found[row]), summary(found[row])];
      },
      choose: (row) => Main.go(`setting=${found[row].key}`),
    });
    function refresh() {
      const matches = Data.matcher(query);
      found = all.filter((item) => passes(item) && (matches === null ||
        matches([...Data.keyTexts(item.key), ...(item.count.size > 1000 ? [] : item.count.keys())])));
      grid.refresh();
    }
    return {
      element: Dom.make("section", {class: "fill", "aria-label": "Settings"},
        Dom.make("div", {class: "filters"}, Dom.select("Show", filters.map(([name, text]) => [name, text]), (name) => {
          [, , passes] = filters.find(([other]) => other === name);
          refresh();
        })), grid.element),
      search(text) {
        query = text;
        refresh();
      },
    };
  }

  // The files that are in a state, and where it is worth saying, those that cannot be read.
  function filesIn(key, state) {
    const files = [];
    Data.files.forEach((file, number) => {
      if (Data.isReadable(file) && Data.stateOf(file, key) === state) {
        files.push(number);
      }
    });
    return files;
  }

  function makeOne(key) {
    const distribution = Data.distributions[key];
    const {isHidden} = Data.keys[key];
    const states = statesOf(distribution);
    let found = states;
    let files = [];
    let query = "";
    const most = Math.max(...states.map((item) => item.files), 1);
    const label = (state) => state === Data.MISSING ? Dom.make("span", {class: "none"}, "missing")
      : isHidden ? Dom.make("span", {class: "none"}, "hidden") : Format.value(Data.texts[state]);

    const list = Grid.make({
      label: "Files with the chosen value", className: "names", columns: ["File"],
      nothing: "Choose a value to see its files.",
      count: () => files.length,
      cells: (row) => [Dom.make("span", {}, Format.visible(Problems.nameOf(files[row])))],
      choose: (row) => Main.go(`file=${files[row]}&key=${key}`),
    });
    const actions = Dom.make("div", {class: "actions"});
    function choose(row) {
      const {state} = found[row];
      files = filesIn(key, state);
      grid.select(row);
      list.refresh();
      const names = () => files.map((file) => Format.word(Problems.nameOf(file))).join(" ");
      Dom.fill(actions,
        Dom.make("h3", {}, Format.counted(files.length, "file", "files"), ": ", label(state)),
        Edits.button(key, state, state === Data.MISSING ? "Add to edits: absent" : "Add to edits: this value"),
        Dom.button("Copy the file names", () => Dom.copy(names(), Format.counted(files.length, "name", "names"))));
    }
    const grid = Grid.make({
      label: "Values, the rarest first", className: "values", columns: ["Value", "Files", "Number"],
      count: () => found.length,
      cells: (row) => {
        const {state, files: number} = found[row];
        const fill = Dom.make("span", {class: `segment ${kindOf(state, distribution)}`});
        fill.style.width = `${Math.max(0.5, 100 * number / most)}%`;
        return [label(state), Dom.make("span", {class: "bar single", "aria-hidden": "true"}, fill),
          `${Format.number(number)} (${(100 * number / Data.readable).toPrecision(3)} %)`];
      },
      choose, move: choose,
    });
    const unread = Data.files.length - Data.readable;
    return {
      element: Dom.make("section", {class: "fill"},
        Dom.make("div", {class: "title"}, Dom.make("a", {class: "back", href: "#settings"}, "\u2190 All settings"),
          Dom.make("h2", {}, Format.visible(Data.keyName(key))),
          Dom.make("p", {class: "muted"}, Format.visible(Data.entryLabel(Data.keys[key].entry)), " \u00b7 ", summary(distribution),
            unread > 0 ? [" \u00b7 ", Dom.make("a", {href: "#problems"},
              `${Format.counted(unread, "file", "files")} could not be read`)] : null)),
        Dom.make("div", {class: "split"}, grid.element,
          Dom.make("div", {class: "details card", role: "region", "aria-label": "Files of the chosen value"}, actions, list.element))),
      search(text) {
        query = text;
        const matches = Data.matcher(query);
        found = matches === null ? states
          : states.filter(({state}) => state !== Data.MISSING && !isHidden && matches([state]));
        grid.refresh();
      },
      show() {
        if (files.length === 0 && found.length > 0) {
          choose(0);
        }
      },
    };
  }

  return {makeView, makeOne, count: all.length};
})();
