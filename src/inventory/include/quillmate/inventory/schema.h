#pragma once

/// The inventory: one SQLite file that any tool reads, UTF-8, without functions or collations of the program's own.
/// PRAGMA user_version is kSchemaVersion, PRAGMA application_id tells that the file is an inventory. A newer version is
/// refused; an older program never writes into it. An older one is brought up to date by the next scan into it.
///
///   lauf          every run of `scan` into it: when, what, how much
///   ordner        folders; `lauf` is the last run that was in it, `grund` why it can't be listed
///   datei         files by folder and name: size, time (nanoseconds since 1970, UTC), state, and the content; in which
///                 run it was met first and last changed; `verschwunden`: the run that missed it
///   inhalt        each distinct content once, by SHA-256 and by how it was taken (`art`: empty for what its bytes say,
///                 else the extension of a module file)
///   modul, routine, verweis, verknuepfung, bindung, befund, api
///                 the rows of a content, numbered in the order of the file from 0 (`folge`)
///   zieldatei     where the links of each file lead to, brought up to date at the end of each run that has changed
///                 anything, and of a merge: `art` as in verknuepfung, "verweis" for references to projects,
///                 "bibliothek" for libraries that are, or should be, in the inventory; `pfad` as far as it can be
///                 told, `ist` the file that it is. `befund` is
///                   da                that file is there
///                   gleicher Name     nobody has been in that folder, but a file of this name is somewhere
///                   nicht da          the folder was searched, or the one in which it should be, and it is not there
///                   nicht im Bestand  nobody has been in that folder, and no file anywhere has this name
///   befundzahl    how many findings of each check a content has
///   pruefung      the checks, with their titles
///
/// A path is `ordner.pfad`, a separator and `datei.name`. Bytes of a name that are no UTF-8 and characters of control
/// are written as "%" and two hexadecimal digits, and so is a "%" in front of two such digits: a name is kept exactly
/// and can always be shown.
///
/// `pruefsumme` of modules and routines is a sum over their code without comments, blank lines, indentation and case:
/// equal sums, equal code. NULL without code.
///
/// Views, whose names begin with v_, answer the usual questions; v_datei is the list of all files that are there.
namespace quillmate::inventory {

inline constexpr int kSchemaVersion = 2;

}  // namespace quillmate::inventory
