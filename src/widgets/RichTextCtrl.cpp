#include "widgets/RichTextCtrl.h"

#include <algorithm>
#include <utility>

#include "widgets/Toolkit.h"

namespace tarn {

namespace {

// Metrics without a peer.
constexpr int kByteWidth = 8;
constexpr int kLineHeight = 16;

}  // namespace

const std::string* CRichTextCtrl::GetLinkAt(std::size_t position) const {
  const auto run =
      std::upper_bound(runs_.begin(), runs_.end(), position,
                       [](std::size_t at, const RichTextRun& each) { return at < each.range.end; });
  return run == runs_.end() ? nullptr : run->target.get();
}

void CRichTextCtrl::AppendRichText(std::string_view richText) {
  RichText added = ReadRichText(richText);
  const std::size_t start = text_.size() - 1;
  text_.pop_back();
  text_ += added.text;
  text_ += '\n';
  for (RichTextRun& run : added.runs) {
    run.range.start += start;
    run.range.end += start;
    runs_.push_back(std::move(run));
  }
  const std::size_t end = text_.size() - 1;
  if (RichTextPeer* drawing = Drawing(); drawing != nullptr && end > start) {
    drawing->OnTextAppended({start, end});
  }
  if (!isUsersSelection_ || selection_.IsEmpty()) SetSelection({end, end});
}

void CRichTextCtrl::Clear() {
  Remove({0, text_.size()});
}

// Removes the range, except for the last character, and moves the insertion point to its start.
void CRichTextCtrl::Remove(TextRange range) {
  range = range.Within(text_.size() - 1);
  const TextRange selected = std::exchange(selection_, {range.start, range.start});
  if (!range.IsEmpty()) {
    text_.erase(range.start, range.Length());
    const auto moved = [&range](std::size_t position) {
      if (position <= range.start) return position;
      return position < range.end ? range.start : position - range.Length();
    };
    for (RichTextRun& run : runs_) run.range = {moved(run.range.start), moved(run.range.end)};
    std::erase_if(runs_, [](const RichTextRun& run) { return run.range.IsEmpty(); });
    if (RichTextPeer* drawing = Drawing()) drawing->OnTextReplaced();
  }
  if (selection_ != selected) OnSelectionChanged();
}

void CRichTextCtrl::SetSelection(TextRange range) {
  isUsersSelection_ = false;
  const TextRange wanted = range.Within(text_.size());
  if (wanted == selection_) return;
  selection_ = wanted;
  if (RichTextPeer* drawing = Drawing()) drawing->OnSelectionChanged();
  OnSelectionChanged();
}

void CRichTextCtrl::NotifySelected(TextRange range) {
  const TextRange wanted = range.Within(text_.size());
  if (!IsCreated()) return;
  isUsersSelection_ = true;
  if (wanted == selection_) return;
  selection_ = wanted;
  OnSelectionChanged();
}

void CRichTextCtrl::Copy() {
  if (!selection_.IsEmpty()) WindowToolkit::Current().SetClipboardText(GetSelectedText());
}

void CRichTextCtrl::Cut() {
  if (selection_.IsEmpty()) return;
  Copy();
  Remove(selection_);
}

std::optional<std::size_t> CRichTextCtrl::HitTest(Point point) {
  std::optional<std::size_t> position;
  if (RichTextPeer* drawing = Drawing(); drawing != nullptr && drawing->HitTest(point, position)) {
    return position;
  }
  if (point.x < 0 || point.y < 0) return std::nullopt;
  std::size_t start = 0;
  for (int line = point.y / kLineHeight; line > 0; --line) {
    start = text_.find('\n', start);
    if (start == text_.npos) return std::nullopt;
    ++start;
  }
  position = start + static_cast<std::size_t>(point.x / kByteWidth);
  return *position < text_.find('\n', start) ? position : std::nullopt;
}

void CRichTextCtrl::OnMouse(const MouseEvent& event) {
  if (!onLink_) return;
  if (const auto position = HitTest(event.point)) NotifyLink(*position, event);
}

void CRichTextCtrl::NotifyLinkKey(std::size_t position) {
  MouseEvent release;
  release.action = MouseAction::Release;
  release.button = MouseButton::Left;
  if (IsCreated()) NotifyLink(position, release);
}

void CRichTextCtrl::NotifyLink(std::size_t position, const MouseEvent& event) {
  const std::string* target = GetLinkAt(position);
  if (target == nullptr || !onLink_) return;
  // Copies: the handler may destroy the control.
  const std::string clicked = *target;
  const LinkHandler handler = onLink_;
  handler(clicked, event);
}

std::unique_ptr<WindowPeer> CRichTextCtrl::MakePeer(WindowToolkit& toolkit) {
  return toolkit.MakePeer(*this);
}

}  // namespace tarn
