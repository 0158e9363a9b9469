#include "symbol_icons.h"

#include <QPainter>
#include <QPixmap>

#include <quillmate/codedb/codes.h>

namespace quillmate::ui {
namespace {

using symbols::SymbolKind;

struct Letter {
  char letter;
  QRgb colour;
};

Letter LetterOf(SymbolKind kind) {
  switch (kind) {
    case SymbolKind::kEvent:
      return {'E', 0xff9a5b00};
    case SymbolKind::kConstant:
      return {'K', 0xff1f6f43};
    case SymbolKind::kParameter:
      return {'P', 0xff5b5b5b};
    case SymbolKind::kType:
    case SymbolKind::kTypeMember:
      return {'T', 0xff6a3a8c};
    case SymbolKind::kEnum:
    case SymbolKind::kEnumMember:
      return {'A', 0xff0f6a7a};
    case SymbolKind::kLabel:
      return {'S', 0xff5b5b5b};
    case SymbolKind::kControl:
      return {'C', 0xff8c2f39};
    default:
      return {'V', 0xff1f4e9a};
  }
}

constexpr int kSide = 32;

QIcon Draw(const Letter& letter) {
  QPixmap picture(kSide, kSide);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(QColor::fromRgb(letter.colour));
  painter.setPen(Qt::NoPen);
  painter.drawRoundedRect(QRect(2, 2, kSide - 4, kSide - 4), 6, 6);
  QFont font = painter.font();
  font.setPixelSize(kSide * 5 / 8);
  font.setBold(true);
  painter.setFont(font);
  painter.setPen(Qt::white);
  painter.drawText(QRect(0, 0, kSide, kSide), Qt::AlignCenter, QString(QLatin1Char(letter.letter)));
  QIcon icon(picture);
  // Not tinted in a selected row.
  icon.addPixmap(picture, QIcon::Selected);
  return icon;
}

int ModuleKindOf(SymbolKind kind) {
  switch (kind) {
    case SymbolKind::kClass:
      return codedb::kClass;
    case SymbolKind::kForm:
      return codedb::kForm;
    case SymbolKind::kDocument:
      return codedb::kDocument;
    default:
      return codedb::kStandard;
  }
}

int RoutineKindOf(SymbolKind kind) {
  switch (kind) {
    case SymbolKind::kFunction:
      return codedb::kFunction;
    case SymbolKind::kPropertyGet:
      return codedb::kGet;
    case SymbolKind::kPropertyLet:
      return codedb::kLet;
    case SymbolKind::kPropertySet:
      return codedb::kSet;
    case SymbolKind::kDeclare:
      return codedb::kDeclareFunction;
    default:
      return codedb::kSub;
  }
}

int VisibilityOf(symbols::Visibility visibility) {
  if (visibility == symbols::Visibility::kPrivate) return codedb::kPrivate;
  return visibility == symbols::Visibility::kFriend ? codedb::kFriend : codedb::kPublic;
}

}  // namespace

QIcon SymbolIcons::Of(const symbols::ReferenceIndex& index, symbols::SymbolId symbol) {
  const symbols::Symbol& of = index.SymbolAt(symbol);
  if (symbols::IsModule(of.kind)) return icons_.Of(codedb::ModuleImageKey(ModuleKindOf(of.kind)));
  if (symbols::IsCallable(of.kind)) {
    return icons_.Of(codedb::RoutineImageKey(RoutineKindOf(of.kind), VisibilityOf(of.visibility)));
  }
  const Letter letter = LetterOf(of.kind);
  QIcon& icon = letters_[letter.letter];
  if (icon.isNull()) icon = Draw(letter);
  return icon;
}

}  // namespace quillmate::ui
