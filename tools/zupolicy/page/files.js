// All files, those that differ most from the others first.
const Files = (() => {
  const rows = Data.files.map((file, number) => {
    const isReadable = Data.isReadable(file);
    return {number, isReadable, outliers: Data.outliersOf(file),
      problems: (file.problems?.length ?? 0) + (file.moreProblems ?? 0)};
  }).sort((one, other) => Number(one.isReadable) - Number(other.isReadable) || other.outliers - one.outliers ||
    one.number - other.number);

  // The rows whose file name or values match.
  function filter(query) {
    const matches = Data.matcher(query);
    return matches === null ? rows : rows.filter(({number}) => matches([Data.files[number].name]));
  }

  function badge({isReadable, outliers}) {
    if (!isReadable) {
      return Dom.make("span", {class: "badge bad"}, "could not be read");
    }
    return outliers === 0 ? Dom.make("span", {class: "badge good"}, "as most files")
      : Dom.make("span", {class: "badge warn"}, `${Format.counted(outliers, "difference", "differences")}`);
  }

  function makeView() {
    let found = rows;
    const grid = Grid.make({
      label: "Files, those that differ most first", className: "files",
      columns: ["File", "Compared with most", "Problems", "Policy version"],
      count: () => found.length,
      cells: (row) => {
        const {number, problems, isReadable} = found[row];
        const file = Data.files[number];
        return [Dom.make("span", {class: "strong"}, Format.visible(Data.texts[file.name], 300)), badge(found[row]),
          problems === 0 ? Dom.make("span", {class: "none"}, "\u2013") : Format.counted(problems, "warning", "warnings"),
          isReadable ? Format.version(Data.texts[file.policyVersion]) : ""];
      },
      choose: (row) => Main.go(`file=${found[row].number}`),
    });
    return {
      element: Dom.make("section", {class: "fill", "aria-label": "Files"}, grid.element),
      search(query) {
        found = filter(query);
        grid.refresh();
      },
    };
  }

  return {makeView, filter};
})();
