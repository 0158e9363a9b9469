#include "site_search_script_p.h"

namespace quillmate::output {

/// Finds what has every word in its name, its kind and place or its comment. Where to look tells the word that the
/// fewest have: first names that begin with it, then names that hold it, then comments; the other words are looked for
/// in what is found there. A name that very many have shows its first ones. What is shown is set as text, never as
/// markup.
const std::string_view kSearchProgram = R"js(
(function () {
  var shown = 200, perName = 10;
  var field = document.getElementById("suchfeld");
  var list = document.getElementById("treffer");
  var state = document.getElementById("anzahl");
  function lines(text) { return text ? text.split("\n") : []; }
  function sums(text) {
    var all = [0];
    text.split(" ").forEach(function (n, i) { all.push(all[i] + (parseInt(n, 36) || 0)); });
    return all;
  }
  var names = lines(data.names), lowerNames = lines(data.names.toLowerCase()), firsts = sums(data.counts);
  var words = lines(data.words.toLowerCase()), wordFirsts = sums(data.wordCounts);
  var kinds = lines(data.kinds), modules = lines(data.modules), lists = lines(data.lists);
  var parts = {}, missing = "", current = null;

  window.sucheTeil = function (file, text) { parts[file] = text.split("\n"); };

  function load(file, then) {
    var script = document.createElement("script");
    script.onload = script.onerror = function () {
      if (!parts[file]) {
        parts[file] = [];
        missing = file;
      }
      then();
    };
    script.src = file + ".js";
    document.head.appendChild(script);
  }

  function matches(all, word) {
    var begin = [], within = [];
    for (var i = 0; word && i < all.length; ++i) {
      var at = all[i].indexOf(word);
      if (at === 0) begin.push(i);
      else if (at > 0) within.push(i);
    }
    return begin.concat(within);
  }

  // The longest piece of a word that comments are taken apart into.
  function piece(word) {
    return word.split(/[^0-9a-z_\u0080-\uffff]+/).reduce(function (a, b) { return b.length > a.length ? b : a; }, "");
  }

  function countOf(found, starts) {
    return found.reduce(function (sum, i) { return sum + starts[i + 1] - starts[i]; }, 0);
  }

  function begin(query) {
    var run = { words: query.toLowerCase().split(/\s+/).filter(function (word) { return word; }), rows: [], hidden: 0,
                listed: 0, seen: {}, name: 0, entry: -1, ofName: 0, word: 0, posting: 0 };
    run.words.forEach(function (word) {
      var inNames = matches(lowerNames, word), inWords = matches(words, piece(word));
      var count = countOf(inNames, firsts) + countOf(inWords, wordFirsts);
      if (count && (run.count === undefined || count < run.count)) {
        run.count = count;
        run.inNames = inNames;
        run.inWords = inWords;
      }
    });
    return run;
  }

  // The name of an entry: the last one that begins at or before it.
  function nameOf(entry) {
    var low = 0, high = names.length;
    while (high - low > 1) {
      var middle = (low + high) >> 1;
      if (firsts[middle] <= entry) low = middle;
      else high = middle;
    }
    return low;
  }

  function fileOf(entry) { return "suche-e" + (Math.floor(entry / data.perPart) + 1); }

  // Name, what it is, address, comment; undefined when the part is missing.
  function read(entry) {
    var line = parts[fileOf(entry)][entry % data.perPart];
    if (line === undefined) return undefined;
    var cells = line.split("\t");
    var module = cells[1] === "" ? ["", ""] : modules[cells[1]].split("\t");
    var place = [module[0], cells[2]].filter(function (part) { return part; }).join(".");
    var cut = cells[3].indexOf("#");
    var page = cut > 0 ? lists[cells[3].substring(0, cut)] : module[1];
    return { name: names[nameOf(entry)], about: kinds[cells[0]] + (place && cells[3] ? " in " + place : ""),
             address: page + (cut < 0 ? "" : cells[3].substring(cut)), comment: cells[4] };
  }

  function fits(found, words) {
    var text = (found.name + " " + found.about + " " + found.comment).toLowerCase();
    return words.every(function (word) { return text.indexOf(word) >= 0; });
  }

  // Looks at the next entry. The file that has to be there first, or "" when there is nothing more to look at.
  function step(run) {
    if (run.inNames && run.name < run.inNames.length) {
      var name = run.inNames[run.name];
      if (run.entry < 0) run.entry = firsts[name];
      if (run.entry >= firsts[name + 1]) {
        run.name += 1;
        run.entry = -1;
        run.ofName = 0;
        return null;
      }
      if (!parts[fileOf(run.entry)]) return fileOf(run.entry);
      take(run, run.entry);
      run.entry += 1;
      var rest = firsts[name + 1] - run.entry;
      if (run.ofName === perName && run.words.length === 1 && rest > 1) {
        run.hidden += rest;
        if (!parts[fileOf(run.entry)]) run.rows.push({ rest: rest, name: names[name], address: "" });
        else run.rows.push({ rest: rest, name: names[name], address: (read(run.entry) || { address: "" }).address });
        run.entry = firsts[name + 1];
      }
      return null;
    }
    if (run.inWords && run.word < run.inWords.length) {
      var word = run.inWords[run.word], part = 0;
      while (part + 1 < data.wordParts.length && data.wordParts[part + 1] <= word) part += 1;
      var file = "suche-w" + (part + 1);
      if (!parts[file]) return file;
      var entries = (parts[file][word - data.wordParts[part]] || "").split(" ");
      var entry = (run.posting === 0 ? 0 : run.last) + parseInt(entries[run.posting], 36);
      if (!(entry >= 0) || run.posting >= entries.length) {
        run.word += 1;
        run.posting = 0;
        return null;
      }
      if (!run.seen[entry] && !parts[fileOf(entry)]) return fileOf(entry);
      take(run, entry);
      run.last = entry;
      run.posting += 1;
      return null;
    }
    return "";
  }

  function take(run, entry) {
    if (run.seen[entry]) return;
    run.seen[entry] = true;
    var found = read(entry);
    if (!found || !fits(found, run.words)) return;
    run.rows.push(found);
    run.listed += 1;
    run.ofName += 1;
  }

  function row(found) {
    var item = document.createElement("li");
    var link = document.createElement(found.address ? "a" : "span");
    if (found.address) link.href = found.address;
    link.textContent = found.rest ? found.rest.toLocaleString("de") + " weitere „" + found.name + "“" : found.name;
    item.appendChild(link);
    if (found.rest) return item;
    var about = document.createElement("small");
    about.textContent = " " + found.about + (found.comment ? ": " + found.comment : "");
    item.appendChild(about);
    return item;
  }

  function show(run, more) {
    var rows = document.createDocumentFragment();
    run.rows.forEach(function (found) { rows.appendChild(row(found)); });
    list.replaceChildren(rows);
    var count = run.listed + run.hidden;
    state.textContent = !run.words.length ? "" : more ? "Mehr als " + shown + " Treffer, die ersten " + shown
      : count === 0 ? "Kein Treffer" : count.toLocaleString("de") + " Treffer";
    if (missing) state.textContent += " (die Datei " + missing + ".js fehlt)";
  }

  function work(run) {
    while (run === current) {
      if (run.listed >= shown) return show(run, true);
      var file = step(run);
      if (file === null) continue;
      if (file === "") return show(run, false);
      return load(file, function () { work(run); });
    }
  }

  function search() {
    current = begin(field.value);
    work(current);
  }

  field.addEventListener("input", search);
  var asked = new URLSearchParams(location.search).get("q");
  if (asked) field.value = asked;
  search();
}());
)js";

}  // namespace quillmate::output
