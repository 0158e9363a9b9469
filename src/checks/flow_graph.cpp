#include <algorithm>

#include "flow_p.h"

namespace quillmate::checks {
namespace {

using language::Statement;
using language::Word;

/// What closes a block that a statement opens; kOther for what opens none.
StatementKind EndOf(StatementKind kind) {
  switch (kind) {
    case StatementKind::kIf:
      return StatementKind::kEndIf;
    case StatementKind::kSelect:
      return StatementKind::kEndSelect;
    case StatementKind::kFor:
    case StatementKind::kForEach:
      return StatementKind::kNext;
    case StatementKind::kDo:
      return StatementKind::kLoop;
    case StatementKind::kWhile:
      return StatementKind::kWend;
    case StatementKind::kWith:
      return StatementKind::kEndWith;
    default:
      return StatementKind::kOther;
  }
}

/// The word after the first one of a statement.
language::NameId SecondWord(const language::Module& code, const Statement& statement) {
  const Index second = statement.firstToken + 1;
  return second < code.tokens.size() && code.tokens[second].offset < statement.offset + statement.length
             ? code.tokens[second].name
             : kNone;
}

/// Whether the condition of a loop is the bare `True` of `Do While True` or `False` of `Do Until False`. `words`: of
/// the statement before its condition.
bool IsForever(const language::Module& code, const Statement& statement, Index words, language::NameId bare) {
  const Index condition = statement.firstToken + words;
  const std::uint32_t end = statement.offset + statement.length;
  if (condition >= code.tokens.size() || code.tokens[condition].offset >= end) return false;
  const bool alone = condition + 1 == code.tokens.size() || code.tokens[condition + 1].offset >= end;
  return alone && code.tokens[condition].name == bare;
}

/// Whether a Do or Loop has a condition that can end it.
bool IsConditional(const language::Module& code, const Statement& statement) {
  const language::NameId word = SecondWord(code, statement);
  if (word == language::kWordWhile) return !IsForever(code, statement, 2, language::kWordTrue);
  return word == language::kWordUntil && !IsForever(code, statement, 2, language::kWordFalse);
}

}  // namespace

bool IsClauseKind(StatementKind kind) noexcept {
  return kind == StatementKind::kElseIf || kind == StatementKind::kElse || kind == StatementKind::kCase ||
         kind == StatementKind::kCaseElse;
}

bool IsBlockEnd(StatementKind kind) noexcept {
  return kind == StatementKind::kEndIf || kind == StatementKind::kEndSelect || kind == StatementKind::kNext ||
         kind == StatementKind::kLoop || kind == StatementKind::kWend || kind == StatementKind::kEndWith;
}

bool IsLoop(StatementKind kind) noexcept {
  return kind == StatementKind::kFor || kind == StatementKind::kForEach || kind == StatementKind::kDo ||
         kind == StatementKind::kWhile;
}

void FlowGraph::Collect(const language::Module& code, Index routine, Index& cursor) {
  const language::Routine& found = code.routines[routine];
  while (cursor < code.statements.size() && code.statements[cursor].offset < found.firstOffset) ++cursor;
  Index use = found.firstUse;
  for (; cursor < code.statements.size() && code.statements[cursor].offset < found.endOffset; ++cursor) {
    const Statement& statement = code.statements[cursor];
    const bool runs = statement.kind != StatementKind::kHeader && statement.kind != StatementKind::kAttribute &&
                      statement.kind != StatementKind::kDeclaration;
    if (!runs || statement.activity != language::Activity::kActive || statement.routine != routine) continue;
    while (use < found.endUse && code.uses[use].offset < statement.offset) ++use;
    FlowNode& node = nodes_.emplace_back();
    node.statement = cursor;
    node.kind = statement.kind;
    node.firstUse = use;
    while (use < found.endUse && code.uses[use].offset < statement.offset + statement.length) ++use;
    node.endUse = use;
  }
}

void FlowGraph::CollectLabels(const language::Module& code, Index routine) {
  const language::Routine& found = code.routines[routine];
  Index node = 0;
  for (Index at = found.firstDeclaration; at < found.endDeclaration; ++at) {
    const language::Declaration& label = code.declarations[at];
    if (label.kind != language::DeclarationKind::kLabel) continue;
    if ((label.flags & language::declaration_flag::kInactive) != 0) continue;
    while (node < nodes_.size() && code.statements[nodes_[node].statement].offset < label.offset) ++node;
    if (node == nodes_.size()) break;
    labels_.push_back({label.name, node});
    nodes_[node].labelled = true;
  }
  std::ranges::stable_sort(labels_, {}, &Label::name);
}

Index FlowGraph::Target(const language::Module& code, Index labelUse) const {
  const language::NameId name = code.uses[labelUse].name;
  const auto found = std::ranges::lower_bound(labels_, name, {}, &Label::name);
  return found == labels_.end() || found->name != name ? kNone : found->node;
}

/// Closes the innermost open block with a node.
void FlowGraph::Close(Index end) {
  const Open& block = open_.back();
  nextClause_[block.lastClause] = end;
  nodes_[block.node].end = end;
  open_.pop_back();
}

/// One-line Ifs end with their line, or with the routine that ends on it: with the node after.
void FlowGraph::CloseLine(const language::Module& code, Index at) {
  const std::uint32_t line = code.statements[nodes_[at].statement].line;
  const bool last = nodes_[at].kind == StatementKind::kRoutineEnd;
  while (!open_.empty() && open_.back().lineEnd != 0 && (last || line >= open_.back().lineEnd)) Close(at);
}

/// `Next i, j` closes as many loops as it has names.
bool FlowGraph::CloseBlocks(const language::Module& code, Index at) {
  Index count = 0;
  for (Index use = nodes_[at].firstUse; use < nodes_[at].endUse; ++use) {
    count += code.uses[use].role == language::Role::kNextVariable && code.uses[use].access == language::Access::kSimple;
  }
  Index inner = kNone;
  for (count = std::max<Index>(count, 1); count > 0; --count) {
    if (open_.empty() || EndOf(nodes_[open_.back().node].kind) != nodes_[at].kind) return false;
    const Index block = open_.back().node;
    nodes_[at].block = nodes_[block].block;
    Close(at);
    if (inner != kNone) nextClause_[inner] = block;
    if (inner == kNone) nodes_[at].next = nodes_[at].begin = block;
    inner = block;
  }
  if (IsLoop(nodes_[inner].kind)) nextClause_[inner] = kNone;
  return true;
}

/// An Else belongs to the innermost If of its line that has none yet, else to the block.
bool FlowGraph::TakeClause(Index at) {
  while (!open_.empty() && open_.back().lineEnd != 0 && open_.back().lastClause != open_.back().node) Close(at);
  if (open_.empty()) return false;
  nodes_[at].block = open_.back().node;
  nextClause_[open_.back().lastClause] = at;
  open_.back().lastClause = at;
  return true;
}

/// Finds for each node the block around it, for each block its clauses and its end.
bool FlowGraph::MatchBlocks(const language::Module& code) {
  open_.clear();
  nextClause_.assign(nodes_.size(), kNone);
  for (Index at = 0; at < nodes_.size(); ++at) {
    CloseLine(code, at);
    FlowNode& node = nodes_[at];
    if (IsClauseKind(node.kind)) {
      if (!TakeClause(at)) return false;
    } else if (IsBlockEnd(node.kind)) {
      if (!CloseBlocks(code, at)) return false;
    } else {
      node.block = open_.empty() ? kNone : open_.back().node;
      if (node.kind == StatementKind::kInlineIf) {
        const language::LogicalLine& line = code.logicalLines[code.LogicalLineAt(code.statements[node.statement].line)];
        open_.push_back({at, at, line.firstLine + line.lineCount});
      } else if (EndOf(node.kind) != StatementKind::kOther) {
        open_.push_back({at, at, 0});
      }
    }
  }
  return open_.empty();
}

/// The node itself, or where one gets that comes to a clause from above.
Index FlowGraph::Past(Index node) const {
  while (node != kNone && IsClause(node)) node = nodes_[nodes_[node].block].end;
  return node;
}

/// Where a node leads to that does not jump.
Index FlowGraph::Following(Index node) const { return node + 1 < nodes_.size() ? Past(node + 1) : kNone; }

/// Where the condition of an If, ElseIf or Case leads to that is not met.
Index FlowGraph::Otherwise(Index node) const {
  const Index next = nextClause_[node];
  const Index block = IsClause(node) ? nodes_[node].block : node;
  return next != kNone && IsClause(next) && nodes_[next].block == block ? next : Past(next);
}

/// Where a loop leads to when it is over.
Index FlowGraph::LoopExit(Index loop) const {
  return nextClause_[loop] != kNone ? nextClause_[loop] : Following(nodes_[loop].end);
}

void FlowGraph::LinkLabels(const language::Module& code, Index node) {
  for (Index use = nodes_[node].firstUse; use < nodes_[node].endUse; ++use) {
    if (code.uses[use].role != language::Role::kLabel) continue;
    const Index target = Target(code, use);
    if (target != kNone) jumps_.emplace_back(node, target);
  }
}

void FlowGraph::Link(const language::Module& code) {
  for (Index at = 0; at < nodes_.size(); ++at) {
    FlowNode& node = nodes_[at];
    const Statement& statement = code.statements[node.statement];
    switch (node.kind) {
      case StatementKind::kIf:
      case StatementKind::kInlineIf:
      case StatementKind::kElseIf:
      case StatementKind::kCase:
        node.next = Following(at);
        node.other = Otherwise(at);
        break;
      case StatementKind::kSelect:
        node.next = nextClause_[at];
        break;
      case StatementKind::kWhile:
        node.next = Following(at);
        if (!IsForever(code, statement, 1, language::kWordTrue)) node.other = LoopExit(at);
        break;
      case StatementKind::kFor:
      case StatementKind::kForEach:
        node.next = Following(at);
        node.other = LoopExit(at);
        break;
      case StatementKind::kDo:
        node.next = Following(at);
        if (IsConditional(code, statement)) node.other = LoopExit(at);
        break;
      case StatementKind::kLoop:
        if (IsConditional(code, statement)) node.other = Following(at);
        break;  // `next` is the loop's head
      case StatementKind::kNext:
      case StatementKind::kWend:
        break;
      case StatementKind::kExit: {
        const language::NameId word = SecondWord(code, statement);
        if (word != language::kWordFor && word != language::kWordDo) break;
        Index block = node.block;
        const auto fits = [&](Index b) {
          const StatementKind kind = nodes_[b].kind;
          return word == language::kWordFor ? kind == StatementKind::kFor || kind == StatementKind::kForEach
                                            : kind == StatementKind::kDo;
        };
        while (block != kNone && !fits(block)) block = nodes_[block].block;
        if (block != kNone) node.next = LoopExit(block);
        break;
      }
      case StatementKind::kGoTo:
      case StatementKind::kResume:
        LinkLabels(code, at);
        break;
      case StatementKind::kGoSub:
        goSub_ = true;
        [[fallthrough]];
      case StatementKind::kOnGoTo:
      case StatementKind::kOnError:
        LinkLabels(code, at);
        node.next = Following(at);
        break;
      case StatementKind::kEnd:
      case StatementKind::kReturn:
      case StatementKind::kRoutineEnd:
        break;
      default:
        node.next = Following(at);
    }
  }
  std::sort(jumps_.begin(), jumps_.end());
}

bool FlowGraph::Build(const language::Module& code, Index routine, Index& cursor) {
  nodes_.clear();
  jumps_.clear();
  labels_.clear();
  goSub_ = false;
  Collect(code, routine, cursor);
  if (nodes_.size() < 2 || !code.routines[routine].hasEnd || nodes_.back().kind != StatementKind::kRoutineEnd)
    return false;
  CollectLabels(code, routine);
  if (!MatchBlocks(code)) return false;
  Link(code);
  return true;
}

}  // namespace quillmate::checks
