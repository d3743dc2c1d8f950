/* Adds to the pages of veldaview what is pleasant to have: tables that sort and filter, and moves from one open line to the
   next. Without it the pages have all the same content. */
"use strict";
(() => {
  const make = (name, properties, ...children) => {
    const element = Object.assign(document.createElement(name), properties);
    element.append(...children);
    return element;
  };

  // ------------------------------------------------------------------------------------------------------------------
  // Tables

  const valueOf = (row, column) => {
    const cell = row.cells[column];
    const text = cell.dataset.v ?? cell.textContent.trim();
    return text !== "" && Number.isFinite(Number(text.split(" ")[0])) ? Number(text.split(" ")[0]) : text;
  };
  const compare = (left, right) => {
    if (typeof left === "number" && typeof right === "number") {
      return left - right;
    }
    return String(left).localeCompare(String(right), "en", { numeric: true });
  };
  const sortBy = (table, column, heading) => {
    const direction = heading.getAttribute("aria-sort") === "ascending" ? "descending" : "ascending";
    const sign = direction === "ascending" ? 1 : -1;
    const body = table.tBodies[0];
    const rows = [...body.rows].map((row) => [valueOf(row, column), row]);
    rows.sort((left, right) => sign * compare(left[0], right[0]));
    body.append(...rows.map((row) => row[1]));
    for (const other of table.tHead.rows[0].cells) {
      other.removeAttribute("aria-sort");
    }
    heading.setAttribute("aria-sort", direction);
  };
  const makeSortable = (table) => {
    [...table.tHead.rows[0].cells].forEach((heading, column) => {
      if (heading.textContent === "Bar") {
        return;
      }
      const button = make("button", { type: "button" }, ...heading.childNodes);
      button.addEventListener("click", () => sortBy(table, column, heading));
      heading.append(button);
    });
  };

  const fewestToFilter = 5;
  const makeFilter = (table) => {
    const rows = [...table.tBodies[0].rows];
    if (rows.length < fewestToFilter) {
      return;
    }
    const names = rows.map((row) => row.cells[0].textContent.toLowerCase() + " " + row.cells[1].textContent.toLowerCase());
    const field = make("input", { type: "search", autocomplete: "off", spellcheck: false });
    const told = make("span", { className: "hint" });
    told.setAttribute("role", "status");
    told.setAttribute("aria-live", "polite");
    const apply = () => {
      const words = field.value.toLowerCase().split(/\s+/);
      let shown = 0;
      rows.forEach((row, place) => {
        row.hidden = !words.every((word) => names[place].includes(word));
        shown += row.hidden ? 0 : 1;
      });
      told.textContent = `${shown} of ${rows.length} shown`;
    };
    field.addEventListener("input", apply);
    const what = make("span", { className: "said" }, table.caption.textContent);
    const label = make("label", {}, "Filter ", what, " ", field);
    const box = table.closest(".wide");
    box.before(make("div", { className: "filter" }, label, told));
    table.filterBy = (text) => {
      field.value = text;
      apply();
      field.focus();
    };
  };

  for (const table of document.querySelectorAll("table.sort")) {
    makeSortable(table);
    if (table.classList.contains("find")) {
      makeFilter(table);
    }
  }
  for (const link of document.querySelectorAll("a[data-filter]")) {
    link.addEventListener("click", () => {
      const heading = document.querySelector(link.hash);
      const table = heading && [...document.querySelectorAll("table.sort")].find(
        (candidate) => heading.compareDocumentPosition(candidate) & Node.DOCUMENT_POSITION_FOLLOWING);
      table?.filterBy?.(link.dataset.filter);
    });
  }

  // ------------------------------------------------------------------------------------------------------------------
  // Lines

  const source = document.querySelector(".source");
  const openTarget = () => {
    const target = document.getElementById(decodeURIComponent(location.hash.slice(1)));
    const details = target?.closest("details");
    if (details) {
      details.open = true;
      target.scrollIntoView({ block: "nearest" });
    }
  };
  window.addEventListener("hashchange", openTarget);
  openTarget();

  if (source) {
    // An opened line is what the address says, so that it can be sent to somebody.
    document.addEventListener("toggle", (event) => {
      if (event.target.matches?.(".source > details[open]") && !event.target.contains(document.querySelector(":target"))) {
        history.replaceState(null, "", "#" + event.target.id);
      }
    }, true);
    const openLines = [...document.querySelectorAll(".source > .x, .source > .p")];
    const told = make("span", {});
    told.setAttribute("role", "status");
    const move = (step) => {
      if (openLines.length === 0) {
        return;
      }
      const here = document.activeElement?.closest(".source > details") ?? document.querySelector(".source > :target");
      let place = openLines.indexOf(here);
      if (place < 0) {
        const isBehind = (line) => here && (here.compareDocumentPosition(line) & Node.DOCUMENT_POSITION_FOLLOWING);
        const next = here ? openLines.findIndex(isBehind) : 0;
        place = next < 0 ? 0 : step > 0 ? next : next - 1;
      } else {
        place += step;
      }
      place = (place + openLines.length) % openLines.length;
      const line = openLines[place];
      history.replaceState(null, "", "#" + line.id);
      line.scrollIntoView({ block: "center" });
      line.querySelector("summary").focus({ preventScroll: true });
      told.textContent = `line ${line.id.slice(1)}, ${place + 1} of ${openLines.length}`;
    };
    const keys = make("input", { type: "checkbox", checked: true });
    const next = make("button", { type: "button" }, "Next open line");
    const previous = make("button", { type: "button" }, "Previous");
    next.addEventListener("click", () => move(1));
    previous.addEventListener("click", () => move(-1));
    const bar = make("div", { className: "keys" }, next, previous,
      make("label", {}, keys, " keys n and p"), told);
    bar.setAttribute("role", "group");
    bar.setAttribute("aria-label", "Moves");
    told.textContent = openLines.length === 0 ? "nothing is open" : `${openLines.length} open lines`;
    source.before(bar);
    document.addEventListener("keydown", (event) => {
      const typing = /^(INPUT|TEXTAREA|SELECT)$/.test(event.target.tagName) && event.target.type !== "checkbox";
      if (!keys.checked || typing || event.ctrlKey || event.altKey || event.metaKey) {
        return;
      }
      if (event.key === "n" || event.key === "p") {
        event.preventDefault();
        move(event.key === "n" ? 1 : -1);
      }
    });
  }
})();
