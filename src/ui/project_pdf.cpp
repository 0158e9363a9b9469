#include "project_pdf.h"

#include <QFile>
#include <QPageLayout>
#include <system_error>
#include <utility>

#include <quillmate/files/failure.h>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

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

bool WriteProjectPdf(const ProjectPdf& project, const std::filesystem::path& folder, int moduleCount,
                     const std::filesystem::path& file, std::function<bool(int, int)> progress) {
  navigation::CodeViews views;
  views.Load(folder, moduleCount);
  PrintJob job = project.job;
  job.parts = project.modules.size();
  job.progress = std::move(progress);
  codedb::ViewIndex last{-1};
  job.part = [&project, &views, &last](std::size_t part) {
    const ProjectPdf::Module& module = project.modules[part];
    // One module in memory at a time, whatever the project.
    if (last.value != module.view.value) views.Forget(last);
    last = module.view;
    return PartOfModule(views, module.view, module.title, module.notes);
  };
  QFile pdf(FromPath(file));
  if (!pdf.open(QIODevice::WriteOnly)) Fail(pdf);
  QPdfWriter writer(&pdf);
  SetUpPdf(writer, job.project);
  const bool isWhole = PrintCode(writer, job);
  if (pdf.error() != QFileDevice::NoError) Fail(pdf);
  return isWhole;
}

}  // namespace quillmate::ui
