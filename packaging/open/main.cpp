#include <QApplication>
#include <QMessageBox>
#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

#include <quillmate/files/paths.h>
#include <quillmate/host/document_host.h>
#include <quillmate/settings/settings_store.h>
#include <quillmate/settings/sources.h>
#include <quillmate/startup/edition.h>

/// quillmate-open EDITION [FILE...]: what desktop entries call. Files that can be read become sources of the edition,
/// as if they had been dropped on its window, then the edition starts. What can't be read is named and not remembered.
namespace {

namespace fs = std::filesystem;
namespace files = quillmate::files;
namespace settings = quillmate::settings;
namespace startup = quillmate::startup;
using quillmate::host::SourceProblem;
using Paths = std::vector<std::string>;

struct EditionName {
  std::string_view name;
  int selector;
};

constexpr std::array kEditions{EditionName{"excel", startup::kExcel}, EditionName{"word", startup::kWord},
                               EditionName{"access", startup::kAccess}, EditionName{"powerpoint", startup::kPowerPoint},
                               EditionName{"visualbasic", startup::kVisualBasic}};

/// Full paths, each once, without those that are sources already.
Paths NewSources(int count, char** files, const Paths& known) {
  Paths added;
  for (int i = 0; i < count; ++i) {
    std::string path = files::PathText(fs::absolute(files::PathFromText(files[i])).lexically_normal());
    const auto holds = [&path](const Paths& paths) { return std::ranges::find(paths, path) != paths.end(); };
    if (!holds(known) && !holds(added)) added.push_back(std::move(path));
  }
  return added;
}

std::vector<SourceProblem> ProblemsOf(const Paths& sources) {
  quillmate::host::DocumentHost documents;
  std::vector<fs::path> paths;
  for (const std::string& source : sources) paths.push_back(files::PathFromText(source));
  documents.SetSources(std::move(paths));
  if (documents.AttachHost()) documents.ProjectCount();
  documents.Release();
  return documents.Problems();
}

/// Takes the sources that can't be used out of the list.
void DropUnusable(Paths& sources, const std::vector<SourceProblem>& problems) {
  for (const SourceProblem& problem : problems) std::erase(sources, problem.source);
}

/// In a message box: who starts a program from the desktop sees no standard error. It has to fit on the screen.
void Tell(const std::vector<SourceProblem>& problems, int argc, char** argv) {
  QString text = QStringLiteral("Folgendes konnte nicht gelesen werden:\n");
  const std::size_t named = std::min<std::size_t>(problems.size(), 8);
  for (std::size_t i = 0; i < named; ++i) {
    text += QLatin1Char('\n') +
            QString::fromStdString(problems[i].source + ": " + quillmate::office::ReasonText(problems[i].reason));
  }
  if (problems.size() > named) text += QStringLiteral("\n... und %1 weitere").arg(problems.size() - named);
  QApplication app(argc, argv);
  QMessageBox box(QMessageBox::Warning, QStringLiteral("Quillmate"), text, QMessageBox::Ok);
  box.setTextFormat(Qt::PlainText);
  box.exec();
}

void AddSources(int selector, int count, char** files, int argc, char** argv) {
  const auto store = settings::OpenSettings(startup::SettingsRootOf(selector));
  Paths known = settings::LoadSources(*store);
  Paths added = NewSources(count, files, known);
  const std::vector<SourceProblem> problems = ProblemsOf(added);
  DropUnusable(added, problems);
  known.insert(known.end(), added.begin(), added.end());
  if (!added.empty()) settings::SaveSources(*store, known);
  if (!problems.empty()) Tell(problems, argc, argv);
}

/// The edition is beside this program.
int Start(std::string_view edition) {
  std::error_code ignored;
  const fs::path own = fs::read_symlink("/proc/self/exe", ignored);
  std::string program = (own.parent_path() / ("quillmate-" + std::string(edition))).string();
  std::array<char*, 2> arguments{program.data(), nullptr};
  execv(program.c_str(), arguments.data());
  std::fprintf(stderr, "quillmate-open: %s lässt sich nicht starten\n", program.c_str());
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  const auto* const edition =
      argc < 2 ? kEditions.end() : std::ranges::find(kEditions, std::string_view(argv[1]), &EditionName::name);
  if (edition == kEditions.end()) {
    std::fputs("Aufruf: quillmate-open excel|word|access|powerpoint|visualbasic [DATEI...]\n", stderr);
    return 2;
  }
  if (argc > 2) AddSources(edition->selector, argc - 2, argv + 2, argc, argv);
  return Start(edition->name);
}
