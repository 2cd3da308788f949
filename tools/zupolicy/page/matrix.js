// Which file has which policy and task, and where it is not as in most files.
const Matrix = (() => {
  const WIDTH = 132;
  const facts = new Map();

  function factsOf(number) {
    if (facts.size > 500) {
      facts.clear();
    }
    if (!facts.has(number)) {
      facts.set(number, Data.outliersByEntry(Data.files[number]));
    }
    return facts.get(number);
  }

  function cell(number, entry) {
    const outliers = factsOf(number).get(entry);
    if (outliers === undefined) {
      return Data.isUsual(entry) ? Dom.make("span", {class: "state missing"}, "missing")
        : Dom.make("span", {class: "none"}, "\u2013");
    }
    if (outliers > 0) {
      return Dom.make("span", {class: "state rare"}, Format.counted(outliers, "differs", "differ"));
    }
    return Data.isUsual(entry) ? Dom.make("span", {class: "state same"}, "as most")
      : Dom.make("span", {class: "state rare"}, "extra");
  }

  function makeView() {
    const entries = Data.entries.map((_, entry) => entry);
    let rows = [];
    const readable = (query) => Files.filter(query).filter(({isReadable}) => isReadable);
    const keyOfEntry = (number, entry) => Data.keysOf(Data.files[number]).find((key) =>
      Data.keys[key].entry === entry && Data.keys[key].kind !== Data.VERSION &&
      Data.isOutlier(key, Data.stateOf(Data.files[number], key)));
    const grid = Grid.make({
      label: "Policies and tasks of each file", className: "matrix", columns: ["File"],
      count: () => rows.length,
      cells: (row) => [Dom.make("span", {class: "strong"}, Format.visible(Problems.nameOf(rows[row].number), 300))],
      wide: {
        columns: () => entries.length,
        width: WIDTH,
        label: (column) => Dom.make("span", {title: Format.plain(Data.entryLabel(column))},
          Format.visible(Data.entryLabel(column), 60)),
        cell: (row, column) => cell(rows[row].number, column),
      },
      choose: (row, column) => {
        const {number} = rows[row];
        const key = column === null ? undefined : keyOfEntry(number, column);
        Main.go(`file=${number}${key === undefined ? "" : `&key=${key}`}`);
      },
    });
    return {
      element: Dom.make("section", {class: "fill", "aria-label": "Matrix"},
        Dom.make("p", {class: "legend"}, Dom.make("span", {class: "state same"}, "as most"), " as in most files  ",
          Dom.make("span", {class: "state rare"}, "2 differ"), " settings that differ or are missing  ",
          Dom.make("span", {class: "state missing"}, "missing"), " most files have it"), grid.element),
      search(query) {
        rows = readable(query);
        grid.refresh();
      },
    };
  }

  return {makeView};
})();
