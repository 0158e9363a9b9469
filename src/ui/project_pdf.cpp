#include "project_pdf.h"

#include <QFile>
#include <QPageLayout>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include <quillmate/codedb/index_files.h>
#include <quillmate/files/failure.h>
#include <quillmate/files/paths.h>
#include <quillmate/files/replacement.h>
#include <quillmate/files/work_folder.h>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBlock = 1 << 16;
constexpr int kPdfResolution = 600;
constexpr QMarginsF kMargins(20, 15, 15, 15);

[[noreturn]] void Fail(const QFile& file) {
  const std::errc code = file.error() == QFileDevice::ResourceError      ? std::errc::no_space_on_device
                         : file.error() == QFileDevice::PermissionsError ? std::errc::permission_denied
                                                                         : std::errc::io_error;
  throw files::Failure(files::FileAction::kWrite, ToPath(file.fileName()), std::make_error_code(code));
}

}  // namespace

void SetUpPdf(QPdfWriter& writer, const QString& title) {
  writer.setResolution(kPdfResolution);
  writer.setPageSize(QPageSize(QPageSize::A4));
  writer.setPageMargins(kMargins, QPageLayout::Millimeter);
  writer.setTitle(title);
  writer.setCreator(QStringLiteral("Quillmate"));
}

PrintedPart PartOfModule(navigation::CodeViews& views, codedb::ViewIndex view, const QString& title,
                         std::vector<LineMark> notes) {
  const navigation::CodeView& code = views.View(view);
  std::size_t end = code.LineCount();
  // The empty lines after the code are not worth paper.
  while (end > 1 && code.LineStart(end - 1) + 2 >= (end < code.LineCount() ? code.LineStart(end) : code.Length()))
    --end;
  return {title, &code, &views.Runs(view), 0, end, std::move(notes)};
}

void WriteProjectPdf(const ProjectPdf& project, const fs::path& folder, int moduleCount, const fs::path& file,
                     BackgroundJob& job) {
  navigation::CodeViews views;
  views.Load(folder, moduleCount);
  PrintJob print = project.job;
  print.parts = project.modules.size();
  codedb::ViewIndex last{-1};
  print.part = [&project, &views, &last](std::size_t part) {
    const ProjectPdf::Module& module = project.modules[part];
    // One module in memory at a time, whatever the project.
    if (last.value != module.view.value) views.Forget(last);
    last = module.view;
    PrintedPart printed = PartOfModule(views, module.view, module.title, module.notes);
    if (module.endLine > 0) {
      printed.firstLine = module.firstLine;
      printed.endLine = module.endLine;
    }
    return printed;
  };
  job.Begin("Zähle die Seiten");
  print.counted = [&job, parts = print.parts](std::size_t part) {
    job.Tell(part, parts);
    return true;
  };
  print.progress = [&job](int page, int pages) {
    if (page == 1) job.Begin("Schreibe " + std::to_string(pages) + (pages == 1 ? " Seite" : " Seiten"));
    job.Tell(static_cast<std::size_t>(page), static_cast<std::size_t>(pages));
    return true;
  };
  QFile pdf(FromPath(file));
  if (!pdf.open(QIODevice::WriteOnly)) Fail(pdf);
  {
    QPdfWriter writer(&pdf);
    SetUpPdf(writer, print.contents || print.parts != 1 ? print.project : project.modules.front().title);
    PrintCode(writer, print);
  }
  if (!pdf.flush() || pdf.error() != QFileDevice::NoError) Fail(pdf);
}

void SaveAsPdf(const ProjectPdf& project, const fs::path& folder, const fs::path& target, BackgroundJob& job) {
  const files::WorkFolder work(files::TemporaryFolder(), files::WorkFolder::Access::kPrivate);
  const fs::path texts = work.Path() / "stand";
  fs::create_directory(texts);
  job.Begin("Lese das Projekt");
  ProjectPdf copied = project;
  const auto count = static_cast<int>(project.modules.size());
  for (int i = 0; i < count; ++i) {
    // By themselves they are a project of their own.
    codedb::ViewIndex& view = copied.modules[static_cast<std::size_t>(i)].view;
    const fs::path text = codedb::ModuleTextPath(folder, codedb::ModuleOf(view));
    view = codedb::ViewIndex{i};
    fs::copy_file(text, codedb::ModuleTextPath(texts, codedb::ModuleOf(view)));
    job.Tell(static_cast<std::size_t>(i) + 1, project.modules.size());
  }
  job.EndReading();
  const fs::path made = work.Path() / "code.pdf";
  WriteProjectPdf(copied, texts, count, made, job);
  job.Begin("Lege das PDF ab");
  files::ReplaceFile(target, [&made](const files::Writer& write) {
    std::ifstream pdf(made, std::ios::binary);
    std::string block(kBlock, '\0');
    while (pdf.read(block.data(), static_cast<std::streamsize>(block.size())) || pdf.gcount() > 0) {
      write(std::string_view(block).substr(0, static_cast<std::size_t>(pdf.gcount())));
    }
    if (pdf.bad()) throw files::Failure(files::FileAction::kRead, made, std::make_error_code(std::errc::io_error));
  });
}

}  // namespace quillmate::ui
