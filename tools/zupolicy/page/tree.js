// Policies and tasks with their sections and settings: of one file, or of two side by side.
const Tree = (() => {
  const OPEN_AT_FIRST = 500;

  // The keys of the files by entry and section: those of the first file in its order, then what only the others have.
  function group(values) {
    const groups = new Map();
    for (const column of values) {
      for (const key of column.keys()) {
        const {entry, kind, section} = Data.keys[key];
        if (!groups.has(entry)) {
          groups.set(entry, {version: null, fields: [], sections: new Map()});
        }
        const mine = groups.get(entry);
        if (kind === Data.VERSION) {
          mine.version = key;
        } else if (kind === Data.FIELD) {
          mine.fields.push(key);
        } else {
          if (!mine.sections.has(section)) {
            mine.sections.set(section, new Set());
          }
          mine.sections.get(section).add(key);
        }
      }
    }
    const isTask = ([entry]) => Data.entries[entry].taskId === null ? 0 : 1;
    return [...groups].sort((one, other) => isTask(one) - isTask(other));
  }

  // "same", "changed", "added" or "removed".
  function compare(states) {
    if (states.length < 2 || states[0] === states[1]) {
      return "same";
    }
    return states[0] === Data.MISSING ? "added" : states[1] === Data.MISSING ? "removed" : "changed";
  }

  // Rows from the top to the bottom: each has type, level, parent (its place), label texts, states and change.
  function nodesOf(files) {
    const values = files.map((file) => {
      const column = new Map();
      Data.keysOf(file).forEach((key, i) => column.set(key, file.values[i]));
      return column;
    });
    const nodes = [];
    const add = (node) => nodes.push({...node, change: node.change ?? compare(node.states)}) - 1;
    const stateOf = (key) => values.map((column) => column.get(key) ?? Data.MISSING);
    const presence = (has) => values.map((column) => has(column) ? 0 : Data.MISSING);

    const top = add({type: "file", level: 1, parent: -1, texts: [], states: [], change: "same"});
    for (const [name, label] of [["policyVersion", "Policy version"], ["taskVersion", "Task version"],
      ["assignmentList", "Assignment list"]]) {
      const states = files.map((file) => file[name]);
      const isVersion = name !== "assignmentList";
      add({type: "fact", level: 2, parent: top, texts: states, label, states, isVersion,
        change: isVersion && Data.raw.ignoreVersions ? "same" : compare(states)});
    }
    for (const [entry, {version, fields, sections}] of group(values)) {
      const ids = Data.entries[entry].idTexts;
      const parent = add({type: "entry", level: 1, parent: -1, texts: ids, entry, key: version,
        states: stateOf(version), change: compare(presence((column) => column.has(version)))});
      for (const key of new Set(fields)) {
        const states = stateOf(key);
        add({type: "leaf", level: 2, parent, key, texts: [...Data.keyTexts(key), ...states], states});
      }
      for (const [section, keys] of sections) {
        const place = add({type: "section", level: 2, parent, entry, section, texts: [...ids, section],
          states: presence((column) => [...keys].some((key) => column.has(key)))});
        for (const key of keys) {
          if (Data.keys[key].kind === Data.SETTING) {
            const states = stateOf(key);
            add({type: "leaf", level: 3, parent: place, key, texts: [...Data.keyTexts(key), ...states], states});
          }
        }
      }
    }
    return nodes;
  }

  const MARKS = {same: "", changed: "~", added: "+", removed: "\u2212"};
  const CHANGES = {same: "", changed: "changed", added: "only in the new file", removed: "only in the old file"};

  function nameOf(node) {
    if (node.type === "file") {
      return ["The file"];
    }
    if (node.type === "fact") {
      return [node.label];
    }
    if (node.type === "entry") {
      const {softwareId, taskId} = Data.entries[node.entry];
      return taskId === null ? [Dom.make("span", {class: "tag"}, "Policy"), ...Format.visible(softwareId)]
        : [Dom.make("span", {class: "tag task"}, "Task"), ...Format.visible(softwareId), " ",
          Dom.make("span", {class: "muted"}, Format.visible(taskId))];
    }
    if (node.type === "section") {
      return Format.visible(Data.texts[node.section]);
    }
    const {kind, name} = Data.keys[node.key];
    return kind === Data.FIELD ? [Data.FIELD_NAMES[Data.texts[name]]] : Format.visible(Data.texts[name], 200);
  }

  function valueOf(node, state) {
    if (state === Data.MISSING) {
      return Dom.make("span", {class: "none"}, "\u2013");
    }
    if (node.type === "file" || node.type === "section") {
      return "";
    }
    if (node.type === "entry" || node.isVersion) {
      return Format.version(Data.texts[state]);
    }
    if (node.key !== undefined && Data.keys[node.key].isHidden) {
      return Dom.make("span", {class: "none"}, "hidden");
    }
    return Format.value(Data.texts[state]);
  }

  // The rows that pass, with the rows around them. Closed rows hide what is in them, unless there is a query.
  function pick(nodes, passes, closed) {
    const keep = new Uint8Array(nodes.length);
    nodes.forEach((node, place) => {
      if (passes(node)) {
        for (let at = place; at >= 0 && keep[at] === 0; at = nodes[at].parent) {
          keep[at] = 1;
        }
      }
    });
    const rows = [];
    let hiddenBelow = Infinity;
    nodes.forEach((node, place) => {
      if (keep[place] === 0 || node.level > hiddenBelow) {
        return;
      }
      hiddenBelow = closed.has(place) ? node.level : Infinity;
      rows.push(place);
    });
    return rows;
  }

  // A tree with its filter, of `files`. `describe(node)` makes the details of a row.
  function make(files, columns, filters, describe) {
    const nodes = nodesOf(files);
    const parents = new Set(nodes.map(({parent}) => parent));
    const closed = new Set();
    if (nodes.length > OPEN_AT_FIRST) {
      nodes.forEach(({level}, place) => level === 1 && parents.has(place) && closed.add(place));
    }
    let query = "";
    let filter = filters[0];
    let rows = [];
    const details = Dom.make("aside", {class: "details card", "aria-label": "Details", tabindex: 0});

    function refresh() {
      const matches = Data.matcher(query);
      const passes = (node) => filter.passes(node) && (matches === null || (node.texts.length > 0 &&
        matches(node.texts.filter((text) => text !== Data.MISSING))));
      rows = pick(nodes, passes, matches === null ? closed : new Set());
      grid.refresh();
    }
    function show(row) {
      const node = nodes[rows[row]];
      if (node !== undefined) {
        grid.select(row);
        Dom.fill(details, describe(node, nodes));
      }
    }
    function setOpen(row, open) {
      closed[open ? "delete" : "add"](rows[row]);
      refresh();
    }
    const isOpen = (row) => parents.has(rows[row]) ? query !== "" || !closed.has(rows[row]) : null;
    const grid = Grid.make({
      label: "Policies and tasks", isTree: true, columns,
      className: `tree files${files.length}`,
      count: () => rows.length,
      level: (row) => nodes[rows[row]].level,
      isOpen, setOpen,
      rowClass: (row) => {
        const node = nodes[rows[row]];
        const isOutlier = Data.isMany && node.type === "leaf" && Data.isOutlier(node.key, node.states[0]);
        return `${node.type} ${node.change}${isOutlier ? " outlier" : ""}`;
      },
      cells: (row) => {
        const node = nodes[rows[row]];
        const open = isOpen(row);
        const mark = files.length < 2 || (node.change === "same" && parents.has(rows[row])) ? []
          : [Dom.make("span", {class: "mark", title: CHANGES[node.change]}, MARKS[node.change])];
        return [
          Dom.make("span", {class: `name l${node.level}`},
            Dom.make("span", {class: "chevron", "aria-hidden": "true"}, open === null ? "" : open ? "\u25be" : "\u25b8"),
            mark, nameOf(node)),
          ...node.states.map((state) => valueOf(node, state)),
          ...(node.states.length === 0 ? files.map(() => "") : []),
        ];
      },
      move: show,
      choose: (row) => {
        const open = isOpen(row);
        if (open !== null && query === "") {
          setOpen(row, !open);
        }
        show(row);
      },
    });
    const choice = Dom.select("Show", filters.map(({name}, i) => [String(i), name]), (value) => {
      filter = filters[Number(value)];
      refresh();
    });
    const closeAll = (open) => {
      nodes.forEach((node, place) => parents.has(place) && closed[open ? "delete" : "add"](place));
      refresh();
    };
    return {
      nodes, choice, grid,
      buttons: [Dom.button("Open all", () => closeAll(true)), Dom.button("Close all", () => closeAll(false))],
      element: Dom.make("div", {class: "split"}, grid.element, details),
      search(text) {
        query = text;
        refresh();
      },
      // Shows the row of a key.
      reveal(key) {
        const place = nodes.findIndex((node) => node.type === "leaf" && node.key === key);
        for (let at = place; at >= 0; at = nodes[at].parent) {
          closed.delete(at);
        }
        refresh();
        const row = rows.indexOf(place);
        if (row >= 0) {
          grid.activate(row);
          show(row);
        }
      },
      // Shows the first setting.
      showFirst() {
        show(Math.max(0, rows.findIndex((place) => nodes[place].type === "leaf")));
      },
    };
  }

  return {make, nameOf, valueOf, CHANGES};
})();
