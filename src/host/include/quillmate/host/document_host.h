#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <quillmate/host/host_automation.h>
#include <quillmate/office/office_file.h>

namespace quillmate::host {

/// A source, or a file of one, that could not be read when it was listed, or not whole.
struct SourceProblem {
  std::string source;  // full path of the source or of a file in it, UTF-8
  /// kNone when it was read, but not whole.
  office::Reason reason = office::Reason::kNone;
  /// What the words of the reason leave open, or what is missing from what was read: German, UTF-8, one line.
  std::string detail;
  /// The source gave nothing at all that can be read.
  bool isWholeSource = false;
  /// File or folder of the project that a module is missing from, as Project() gives it; empty for anything else.
  std::string project{};

  /// The reason, German, UTF-8, one line.
  std::string Text() const;
};

/// Office files, module files, folders of both and VB project files as the open projects of a running host. It attaches
/// when at least one source is known; a source that holds no readable module is a problem, not a project.
///
/// * Office file, told by its content whatever its name: its macro project, with the project's own name and its modules
///   in the order of the host's editor. A locked project is listed without modules. What could not be read of it, or
///   not whole, is a problem beside the project; a module without a readable text is listed with 0 lines.
/// * Module file: a project of its own, named after the file's stem.
/// * Folder: named after the folder. Every module file in it, then those of its sub-folders, each level in the byte
///   order of its names; symbolic links to folders are not followed. The VB
///   project files in it and below follow as projects of their own, and what they name is theirs alone; then the Office
///   files, each one too; those without macros are passed over.
/// * VB project file (.vbp): the modules of its Module, Class, Form, UserControl, PropertyPage, UserDocument and
///   Designer lines in the file's order, paths relative to the file, with backslashes, without regard to case. Its Name
///   line names the project, otherwise the file's stem.
///
/// A file that is given twice, alone or in a folder, counts once; a module file may belong to several VB projects.
///
/// A module is named as the project file names it, else by its own VB_Name, else after its file. Names that occur twice
/// in one project are kept as they are; the position tells the components apart.
///
/// With its modules an Office file gives what its document says of them: controls, sheets, who starts a macro. A file
/// with macro sheets of Excel 4 is told even where it holds nothing else.
///
/// A file is opened, and unpacked, once for a listing and the read that follows it: up to 32 MB of texts are kept from
/// the listing until they are read, and at the latest until the read's Release or the next listing. A file that has
/// changed since, or whose texts were too many, is opened again; an Office file once for all its modules.
///
/// ProjectCount looks through the sources anew, as the first step of a listing; all positions belong to that listing,
/// also those of a later read. What is read is the file as it is then; a file that is gone, or that holds a module of
/// another name by then, is a files::Failure of the file.
class DocumentHost : public HostAutomation {
 public:
  DocumentHost();
  ~DocumentHost() override;

  /// The sources, in the order in which they are listed. Takes effect at the next listing.
  void SetSources(std::vector<std::filesystem::path> sources);
  /// Whether the formulas of Excel 4 macro sheets are modules, where a file has them as text. Takes effect at the next
  /// listing.
  void SetExcel4(bool wanted) noexcept;
  /// The code page of module files that tell no encoding of their own, by its Windows number; 0: Windows-1252. Takes
  /// effect at the next listing.
  void SetCodePage(int number) noexcept;
  /// Sources and files that the last listing had to leave out.
  const std::vector<SourceProblem>& Problems() const noexcept;
  /// The path of every file that the last listing has opened, those without code too: nobody may write to them.
  const std::vector<std::filesystem::path::string_type>& Files() const noexcept;

  bool AttachHost() override;
  void Release() noexcept override;
  float HostVersion() const noexcept override;
  std::vector<codedb::OmissionFact> Omissions() const override;
  int ProjectCount() override;
  HostProject Project(int project) override;
  int ComponentCount(int project) override;
  HostComponent Component(int project, int component) override;
  HostComponent ComponentByName(int project, const std::string& name, int position) override;
  std::string Lines(int project, const std::string& name, int position, int count) override;
  codedb::ProjectFacts FactsOfProject(int project) override;
  codedb::ModuleFacts FactsOfComponent(int project, const std::string& name, int position) override;
  std::function<WholeComponent()> StartReading(int project, const std::string& name, int position) override;
  std::vector<codedb::BindingFact> BindingsOfProject(int project) override;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quillmate::host
