// Lists and tables of any length: only the rows that can be seen are in the page.
//
// The table itself has the focus, and names its active row to assistive technology. Arrow keys, Page Up, Page Down, Home
// and End move; Enter and the space bar choose; in a tree the left and the right arrow close and open.
const Grid = (() => {
  // Browsers lay out no more than some ten million pixels. A longer table scrolls in larger steps.
  const LONGEST = 8000000;
  const OVERSCAN = 6;
  const PRINTED = 2000;
  const shown = new Set();
  let made = 0;

  // Options: label, className, columns (names), count(), cells(row) (nodes), and if wanted isTree, level(row),
  // isOpen(row) (null: it cannot be opened), setOpen(row, open), rowClass(row), choose(row, column), move(row),
  // wide: {columns, label(column), cell(row, column), width}: further columns of equal width, drawn as they are seen.
  function make(options) {
    const id = `grid${++made}`;
    const {wide} = options;
    const head = Dom.make("div", {role: "row", class: "row head", "aria-rowindex": 1});
    const body = Dom.make("div", {role: "rowgroup", class: "body"});
    const element = Dom.make("div", {role: options.isTree ? "treegrid" : "grid", class: `grid ${options.className}`,
      tabindex: 0, "aria-label": options.label,
      "aria-colcount": options.columns.length + (wide ? wide.columns() : 0)},
      Dom.make("div", {role: "rowgroup", class: "heads"}, head), body);
    const empty = Dom.make("p", {class: "nothing"}, options.nothing ?? "Nothing matches.");
    const frame = Dom.make("div", {class: `frame ${options.className.split(" ")[0]}-frame`}, element, empty);
    const rows = new Map();
    let active = 0;
    let activeColumn = 0;
    let selected = -1;
    let drawn = "";
    let pending = 0;
    let isPrinting = false;

    const columnsAt = () => {
      if (!wide) {
        return [0, 0];
      }
      const first = Math.floor(element.scrollLeft / wide.width);
      return [Math.max(0, first - 1), Math.min(wide.columns(), first + Math.ceil(element.clientWidth / wide.width) + 1)];
    };
    const cell = (role, content, column, className) => {
      const node = Dom.make("span", {role, class: `cell c${className ?? column}`, "aria-colindex": column + 1});
      node.append(...[content].flat());
      return node;
    };
    const wideCell = (role, content, column) => {
      const node = cell(role, content, options.columns.length + column, "w");
      node.style.left = `calc(var(--first) + ${column * wide.width}px)`;
      node.style.width = `${wide.width}px`;
      return node;
    };

    function drawHead([from, to]) {
      Dom.fill(head, options.columns.map((name, column) => cell("columnheader", name, column)));
      for (let column = from; column < to; ++column) {
        head.append(wideCell("columnheader", wide.label(column), column));
      }
    }
    function makeRow(row, [from, to]) {
      const open = options.isTree ? options.isOpen(row) : null;
      const node = Dom.make("div", {role: "row", id: `${id}-${row}`, class: `row ${options.rowClass?.(row) ?? ""}`,
        "aria-rowindex": row + 2, "aria-level": options.isTree ? options.level(row) : null,
        "aria-expanded": open === null ? null : String(open)});
      node.dataset.row = row;
      node.append(...options.cells(row).map((content, column) => cell("gridcell", content, column)));
      for (let column = from; column < to; ++column) {
        const made = wideCell("gridcell", wide.cell(row, column), column);
        made.dataset.column = column;
        node.append(made);
      }
      return node;
    }

    // Draws the rows from `first` to before `last`, in their order.
    function place(first, last, columns, top) {
      for (const [row, node] of rows) {
        if (row < first || row >= last) {
          node.remove();
          rows.delete(row);
        }
      }
      let next = body.firstChild;
      for (let row = first; row < last; ++row) {
        let node = rows.get(row);
        if (node === undefined) {
          node = makeRow(row, columns);
          rows.set(row, node);
        }
        if (node === next) {
          next = next.nextSibling;
        } else {
          body.insertBefore(node, next);
        }
        node.style.transform = top === null ? "" : `translateY(${top(row)}px)`;
        node.classList.toggle("active", row === active);
        node.setAttribute("aria-selected", String(row === selected));
        if (wide) {
          for (const child of node.children) {
            child.classList.toggle("current", row === active && Number(child.dataset.column ?? -1) === activeColumn);
          }
        }
      }
    }
    const rowHeight = () => parseFloat(getComputedStyle(element).getPropertyValue("--row")) || 36;

    function measures() {
      const height = rowHeight();
      const total = options.count() * height;
      const laid = Math.min(total, LONGEST);
      const view = Math.max(0, element.clientHeight - head.offsetHeight);
      return {height, laid, view, ratio: total > laid ? (total - view) / (laid - view) : 1};
    }
    function draw() {
      pending = 0;
      const count = options.count();
      empty.hidden = count > 0;
      element.hidden = count === 0;
      element.setAttribute("aria-rowcount", count + 1);
      active = Math.min(active, Math.max(0, count - 1));
      const columns = columnsAt();
      if (drawn !== columns.join()) {
        drawn = columns.join();
        clear();
        drawHead(columns);
      }
      if (isPrinting) {
        body.style.height = "";
        place(0, Math.min(count, PRINTED), columns, null);
      } else {
        const {height, laid, view, ratio} = measures();
        const offset = element.scrollTop * ratio;
        body.style.height = `${laid}px`;
        if (wide) {
          body.style.width = `calc(var(--first) + ${wide.columns() * wide.width}px)`;
          head.style.width = body.style.width;
        }
        place(Math.max(0, Math.floor(offset / height) - OVERSCAN),
          Math.min(count, Math.ceil((offset + view) / height) + OVERSCAN), columns,
          (row) => element.scrollTop + row * height - offset);
      }
      if (rows.has(active)) {
        element.setAttribute("aria-activedescendant", `${id}-${active}`);
      } else {
        element.removeAttribute("aria-activedescendant");
      }
    }
    function clear() {
      rows.clear();
      body.replaceChildren();
    }
    function soon() {
      pending = pending || requestAnimationFrame(draw);
    }

    function scrollTo(row) {
      const {height, view, ratio} = measures();
      const top = row * height;
      const offset = element.scrollTop * ratio;
      if (top < offset) {
        element.scrollTop = top / ratio;
      } else if (top + height > offset + view) {
        element.scrollTop = (top + height - view) / ratio;
      }
    }
    function activate(row) {
      active = Math.max(0, Math.min(row, options.count() - 1));
      scrollTo(active);
      draw();
    }
    function step(row) {
      activate(row);
      options.move?.(active);
    }
    function choose(row, column) {
      active = row;
      options.choose?.(row, column);
      draw();
    }
    function turn(open) {
      if (wide) {
        activeColumn = Math.max(0, Math.min(wide.columns() - 1, activeColumn + (open ? 1 : -1)));
        const left = activeColumn * wide.width;
        element.scrollLeft = Math.min(Math.max(element.scrollLeft, left - wide.width), left);
        draw();
      } else if (options.isTree && options.isOpen(active) !== null && options.isOpen(active) !== open) {
        options.setOpen(active, open);
      }
    }

    function press(event) {
      if (event.ctrlKey || event.altKey || event.metaKey || event.target !== element) {
        return;
      }
      const page = Math.max(1, Math.floor(measures().view / rowHeight()) - 1);
      const actions = {
        ArrowDown: () => step(active + 1), ArrowUp: () => step(active - 1),
        PageDown: () => step(active + page), PageUp: () => step(active - page),
        Home: () => step(0), End: () => step(options.count() - 1),
        ArrowRight: () => turn(true), ArrowLeft: () => turn(false),
        Enter: () => choose(active, activeColumn), " ": () => choose(active, activeColumn),
      };
      if (actions[event.key] !== undefined && options.count() > 0) {
        event.preventDefault();
        actions[event.key]();
      }
    }
    element.addEventListener("keydown", press);
    element.addEventListener("scroll", soon, {passive: true});
    body.addEventListener("click", (event) => {
      const row = event.target.closest(".row");
      if (row !== null) {
        const column = event.target.closest("[data-column]");
        activeColumn = column === null ? activeColumn : Number(column.dataset.column);
        choose(Number(row.dataset.row), column === null ? null : activeColumn);
      }
    });
    new ResizeObserver(soon).observe(element);

    const grid = {
      element: frame,
      // The rows are other ones now.
      refresh() {
        drawn = "";
        draw();
      },
      activate,
      select(row) {
        selected = row;
        soon();
      },
      focus: () => element.focus(),
      print(on) {
        isPrinting = on;
        frame.classList.toggle("printing", on);
        clear();
        draw();
      },
    };
    shown.add(new WeakRef(grid));
    return grid;
  }

  function print(on) {
    for (const reference of shown) {
      const grid = reference.deref();
      if (grid === undefined) {
        shown.delete(reference);
      } else if (grid.element.isConnected) {
        grid.print(on);
      }
    }
  }
  addEventListener("beforeprint", () => print(true));
  addEventListener("afterprint", () => print(false));

  return {make};
})();
