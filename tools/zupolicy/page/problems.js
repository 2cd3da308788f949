// What is wrong with the files, the worst first.
const Problems = (() => {
  const NAMES = ["unreadable", "rule broken", "warning", "more"];
  const CLASSES = ["bad", "bad", "warn", "muted"];

  const nameOf = (file) => Data.texts[Data.files[file].name];
  const placeOf = ({file, line, column}) => nameOf(file) + (line ? `:${line}:${column}` : "");

  // The problems of these files; `choose(problem)` is called for the one that a reader picks.
  function makeList(problems, choose) {
    let found = problems;
    const grid = Grid.make({
      label: "Problems", className: "problems", columns: ["Kind", "Place", "Message"],
      nothing: "No problem matches.",
      count: () => found.length,
      rowClass: (row) => CLASSES[found[row].rank],
      cells: (row) => [
        Dom.make("span", {class: `badge ${CLASSES[found[row].rank]}`}, NAMES[found[row].rank]),
        Dom.make("span", {class: "place"}, Format.visible(placeOf(found[row]))),
        Dom.make("span", {class: "message"}, Format.visible(found[row].message, 500)),
      ],
      choose: (row) => choose(found[row]),
    });
    return {
      grid,
      search(query) {
        const words = query.toLowerCase().split(/\s+/);
        found = problems.filter((problem) => {
          const text = `${placeOf(problem)} ${problem.message} ${NAMES[problem.rank]}`.toLowerCase();
          return words.every((word) => text.includes(word));
        });
        grid.refresh();
      },
    };
  }

  function makeView() {
    const list = makeList(Data.problems, ({file}) => Main.go(`file=${file}`));
    return {element: Dom.make("section", {class: "fill", "aria-label": "Problems"}, list.grid.element),
      search: list.search};
  }

  return {makeList, makeView, nameOf, placeOf};
})();
