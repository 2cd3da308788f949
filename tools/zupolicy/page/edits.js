// The edits that a reader has chosen, as lines that `zupolicy apply` reads.
const Edits = (() => {
  const SHOWN = 200;
  const edits = new Map();
  const listeners = [];

  // The edit that gives a setting or field this state. Null where there is none: a hidden value is not known here.
  function of(key, state) {
    const {entry, kind, section, name, isHidden} = Data.keys[key];
    if (isHidden || kind === Data.VERSION || (kind === Data.FIELD && state === Data.MISSING)) {
      return null;
    }
    const {softwareId, taskId} = Data.entries[entry];
    const edit = {edit: state === Data.MISSING ? "absent" : "set", softwareId};
    if (taskId !== null) {
      edit.taskId = taskId;
    }
    if (kind === Data.FIELD) {
      return {...edit, fields: {[Data.texts[name]]: Data.texts[state]}};
    }
    edit.section = Data.texts[section];
    if (kind === Data.SETTING) {
      edit.name = Data.texts[name];
      if (state !== Data.MISSING) {
        edit.value = Data.texts[state];
      }
    }
    return edit;
  }

  function changed() {
    listeners.forEach((listener) => listener());
  }
  // A later edit of the same thing takes the place of the earlier one.
  function add(key, state) {
    edits.delete(key);
    edits.set(key, {edit: of(key, state), key, state});
    changed();
    Dom.announce(`Edit added: ${Format.plain(Data.keyName(key))}`);
  }
  function remove(key) {
    edits.delete(key);
    changed();
  }

  // A button for an edit, or a reason why there is none.
  function button(key, state, label) {
    return of(key, state) === null ? null : Dom.button(label, () => add(key, state));
  }

  const lines = () => Data.raw.edits + [...edits.values()].map(({edit}) => `${JSON.stringify(edit)}\n`).join("");
  const count = () => edits.size + Data.raw.edits.split("\n").length - 1;

  function download(text) {
    const address = URL.createObjectURL(new Blob([text], {type: "application/x-ndjson"}));
    Dom.make("a", {href: address, download: "edits.jsonl"}).click();
    setTimeout(() => URL.revokeObjectURL(address), 10000);
  }

  function describe({key, state}) {
    const {entry} = Data.keys[key];
    return [Dom.make("strong", {}, Format.visible(Data.entryLabel(entry))), " ", Format.visible(Data.keyName(key)), " ",
      state === Data.MISSING ? Dom.make("span", {class: "none"}, "absent") : Format.value(Data.texts[state])].flat();
  }

  function makeView() {
    const area = Dom.make("textarea", {readonly: "", rows: 12, spellcheck: "false", id: "edits-text"});
    const list = Dom.make("ul", {class: "edits"});
    const more = Dom.make("p", {class: "muted"});
    const command = "zupolicy apply FILE... --edits edits.jsonl --dry-run";
    const element = Dom.make("section", {class: "card", "aria-labelledby": "edits-title"},
      Dom.make("h2", {id: "edits-title"}, "Edits"),
      Dom.make("p", {class: "muted"}, Data.isDifferences
        ? "These edits give the old file the meaning of the new one. Each line is one edit."
        : "Choose values in the other views. Each line is one edit, and says what a file is to hold afterwards."),
      Dom.make("div", {class: "actions"},
        Dom.button("Download edits.jsonl", () => download(lines()), "main"),
        Dom.button("Copy the lines", () => Dom.copy(lines(), "the edits")),
        Dom.button("Copy the command", () => Dom.copy(command, command)),
        Data.isDifferences ? null : Dom.button("Remove all", () => {
          edits.clear();
          changed();
        })),
      Dom.make("label", {class: "field", for: "edits-text"}, "Lines for ", Dom.make("code", {}, command)),
      area, list, more);
    function refresh() {
      area.value = lines();
      const chosen = [...edits.values()];
      Dom.fill(list, chosen.slice(0, SHOWN).map((item) => Dom.make("li", {}, Dom.make("span", {}, describe(item)),
        Dom.make("button", {type: "button", class: "plain", onclick: () => remove(item.key),
          "aria-label": `Remove the edit of ${Format.plain(Data.keyName(item.key))}`}, "Remove"))));
      more.textContent = chosen.length > SHOWN ? `and ${Format.number(chosen.length - SHOWN)} more` : "";
    }
    listeners.push(refresh);
    refresh();
    return {element, search() {}};
  }

  return {add, button, of, count, makeView, onChange: (listener) => listeners.push(listener)};
})();
