// One file: what is wrong with it, and its policies and tasks as a tree. And two files, side by side.
const FileView = (() => {
  const isTask = (node) => node.entry === undefined && node.key === undefined ? null
    : Data.entries[node.entry ?? Data.keys[node.key].entry].taskId !== null;
  const FILTERS = [
    {name: "everything", passes: () => true},
    {name: "policies", passes: (node) => isTask(node) === false},
    {name: "tasks", passes: (node) => isTask(node) === true},
  ];

  // A command line to copy.
  function command(line) {
    const text = Dom.make("code", {class: "command"}, Format.visible(line));
    return Dom.make("div", {class: "copy"}, text, Dom.make("button", {type: "button", class: "plain",
      onclick: () => Dom.copy(line, Format.plain(line)), "aria-label": `Copy: ${Format.plain(line)}`}, "Copy"));
  }
  function commandsFor(node, file) {
    const name = Data.texts[file.name];
    if (node.type === "file" || node.type === "fact") {
      return [command(Format.command("show", null, [name]))];
    }
    const {softwareId, taskId} = Data.entries[node.entry ?? Data.keys[node.key].entry];
    const key = node.type === "leaf" ? Data.keys[node.key] : null;
    if (key === null || key.kind === Data.FIELD) {
      return [command(Format.command("show", taskId, [name, softwareId]))];
    }
    const path = [name, softwareId, Data.texts[key.section], Data.texts[key.name]];
    const at = Data.stateOf(file, node.key);
    return [command(Format.command("get", taskId, path)),
      key.isHidden || at === Data.MISSING ? null : command(Format.command("set", taskId, [...path, Data.texts[at]]))];
  }

  function path(node) {
    const entry = node.entry ?? (node.key === undefined ? null : Data.keys[node.key].entry);
    const parts = [];
    if (entry !== null) {
      const {softwareId, taskId} = Data.entries[entry];
      parts.push(`${taskId === null ? "Policy" : "Task"} ${softwareId}${taskId === null ? "" : ` ${taskId}`}`);
    }
    if (node.type === "leaf" && Data.keys[node.key].kind === Data.SETTING) {
      parts.push(Data.texts[Data.keys[node.key].section]);
    }
    return parts.map((part) => Dom.make("li", {}, Format.visible(part)));
  }

  // The part of two texts in which they differ.
  function differing(one, other) {
    let begin = 0;
    const shorter = Math.min(one.length, other.length);
    while (begin < shorter && one[begin] === other[begin]) {
      ++begin;
    }
    let end = 0;
    while (end < shorter - begin && one[one.length - 1 - end] === other[other.length - 1 - end]) {
      ++end;
    }
    return (text) => [...Format.visible(text.slice(0, begin)),
      Dom.make("mark", {}, Format.visible(text.slice(begin, text.length - end))),
      ...Format.visible(text.slice(text.length - end))];
  }

  function whole(node, state, show) {
    if (state === Data.MISSING) {
      return Dom.make("p", {class: "none"}, "missing");
    }
    const text = Data.texts[state];
    const isVersion = node.type === "entry" || node.isVersion;
    if (isVersion || text === "" || (node.key !== undefined && Data.keys[node.key].isHidden)) {
      return Dom.make("p", {}, Tree.valueOf(node, state));
    }
    return Dom.make("pre", {class: "whole", dir: "auto", tabindex: 0}, show(text));
  }

  function spread(node, state) {
    const same = Data.distributions[node.key].count.get(state);
    const {isHidden} = Data.keys[node.key];
    return Dom.make("p", {}, Dom.make("a", {href: `#setting=${node.key}`}, isHidden
      ? `${Format.number(same)} of ${Format.number(Data.readable)} files have it`
      : same === Data.readable
      ? `All ${Format.number(same)} files have this value`
      : `${Format.number(same)} of ${Format.number(Data.readable)} files have this value`));
  }

  function describe(node, files, headings) {
    const texts = node.states.map((state) => state === Data.MISSING ? "" : Data.texts[state]);
    const mark = node.change === "changed" ? differing(...texts) : (text) => Format.visible(text);
    const isLeaf = node.type === "leaf";
    const has = node.type === "file" || node.type === "section" ? [] : node.states;
    const shell = Dom.select("Shell", [["posix", "POSIX"], ["powershell", "PowerShell"]], (name) => {
      Format.shell = name;
      Dom.fill(commands, commandList());
    });
    shell.querySelector("select").value = Format.shell;
    const commandList = () => files.map((file, i) => node.states[i] === Data.MISSING ? null : commandsFor(node, file));
    const commands = Dom.make("div", {class: "commands"}, commandList());
    return [
      Dom.make("ol", {class: "path"}, path(node)),
      Dom.make("h3", {}, Tree.nameOf(node)),
      node.change === "same" ? null : Dom.make("p", {class: `badge ${node.change}`}, Tree.CHANGES[node.change]),
      has.map((state, i) => [headings[i] ? Dom.make("h4", {}, headings[i]) : null, whole(node, state, mark)]),
      isLeaf && Data.isMany ? spread(node, node.states[0]) : null,
      isLeaf && !Data.isDifferences ? Edits.button(node.key, node.states[0], "Add to edits") : null,
      Dom.make("div", {class: "row-of"}, Dom.make("h4", {}, "Commands"), shell),
      commands,
    ];
  }

  function heading(number) {
    const file = Data.files[number];
    const back = Data.isMany ? Dom.make("a", {class: "back", href: "#files"}, "\u2190 All files") : null;
    const list = Data.texts[file.assignmentList] ?? "";
    return Dom.make("div", {class: "title"}, back, Dom.make("h2", {}, Format.visible(Data.texts[file.name])),
      list === "" ? null : Dom.make("p", {class: "muted"}, "Assigned to ", Format.visible(list, 200)));
  }

  function makeOne(number) {
    const file = Data.files[number];
    const mine = Data.problems.filter((problem) => problem.file === number);
    const problems = mine.length === 0 ? null : Problems.makeList(mine, () => {});
    const box = problems === null ? null
      : Dom.make("div", {class: "few", "aria-label": "Problems of this file", role: "region"}, problems.grid.element);
    if (!Data.isReadable(file)) {
      return {element: Dom.make("section", {class: "fill"}, heading(number), box), search: problems.search, show() {}};
    }
    const filters = Data.isMany ? [...FILTERS, {name: "what is not as in most files",
      passes: (node) => node.type === "leaf" && Data.isOutlier(node.key, node.states[0])}] : FILTERS;
    const tree = Tree.make([file], ["Name", "Value"], filters, (node) => describe(node, [file], []));
    const isSound = mine.length === 0 ? Dom.make("p", {class: "badge good"}, "no problems") : null;
    return {
      element: Dom.make("section", {class: "fill"}, heading(number),
        box, Dom.make("div", {class: "filters"}, isSound, tree.choice, tree.buttons), tree.element),
      search: tree.search,
      show(key) {
        if (key !== null) {
          tree.reveal(key);
        } else {
          tree.showFirst();
        }
      },
    };
  }

  const made = new Map();
  // The view of a file; those that were seen last are kept as they are.
  function view(number) {
    const known = made.get(number) ?? makeOne(number);
    made.delete(number);
    made.set(number, known);
    if (made.size > 8) {
      made.delete(made.keys().next().value);
    }
    return known;
  }

  function makeDifferences() {
    const files = Data.files;
    const isChange = (node) => node.change !== "same";
    const only = (change) => (node) => node.change === change;
    const filters = [
      {name: "differences", passes: isChange},
      {name: "everything", passes: () => true},
      {name: "changed", passes: only("changed")},
      {name: "only in the new file", passes: only("added")},
      {name: "only in the old file", passes: only("removed")},
    ];
    const names = files.map((file) => Format.plain(Data.texts[file.name]));
    const tree = Tree.make(files, ["Name", `Old: ${names[0]}`, `New: ${names[1]}`], filters,
      (node) => describe(node, files, ["Old", "New"]));
    const count = (change) => tree.nodes.filter((node) => node.change === change &&
      (node.type === "leaf" || node.type === "fact")).length;
    const numbers = Dom.make("p", {class: "numbers"},
      Dom.make("span", {class: "badge changed"}, `~ ${Format.number(count("changed"))} changed`), " ",
      Dom.make("span", {class: "badge added"}, `+ ${Format.number(count("added"))} only in the new file`), " ",
      Dom.make("span", {class: "badge removed"}, `\u2212 ${Format.number(count("removed"))} only in the old file`));
    return {
      element: Dom.make("section", {class: "fill"}, Dom.make("h2", {class: "hidden"}, "Differences"),
        Dom.make("div", {class: "filters"}, numbers, tree.choice, tree.buttons), tree.element),
      search: tree.search,
      show: () => tree.showFirst(),
    };
  }

  return {view, makeDifferences};
})();
