#include "widgets/qt/QtBrowser.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMenu>
#include <QScrollBar>
#include <QStringDecoder>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextCursor>
#include <QUrl>
#include <functional>
#include <optional>
#include <vector>

#include "widgets/qt/QtColor.h"
#include "widgets/qt/WidgetPeer.h"
#include "widgets/qt/WindowInput.h"

namespace tarn {

namespace {

constexpr qint64 kLargestPage = 64 << 20;
// A single letter is a drive.
constexpr qsizetype kShortestScheme = 2;

bool HasScheme(const QString& address) {
  const qsizetype colon = address.indexOf(QLatin1Char(':'));
  if (colon < kShortestScheme || !address[0].isLetter()) return false;
  for (const QChar c : QStringView(address).left(colon)) {
    const bool isPart = c.unicode() < 128 && (c.isLetterOrNumber() || c == QLatin1Char('+') ||
                                              c == QLatin1Char('-') || c == QLatin1Char('.'));
    if (!isPart) return false;
  }
  return true;
}

// Returns an empty string for a remote address.
QString ToLocalPath(const QString& address) {
  if (!HasScheme(address)) return address;
  const QUrl url(address);
  return url.isLocalFile() ? url.toLocalFile() : QString();
}

std::optional<QByteArray> ReadPage(const QString& path) {
  QFile file(path);
  const bool isReadable = QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly);
  if (!isReadable || file.size() > kLargestPage) return std::nullopt;
  return file.readAll();
}

// Link targets are stored outside the document, by number, since passing an address through the URL
// parser would change it.
class PageView : public QTextBrowser {
 public:
  // Returns whether a menu was already shown there, or the page has been destroyed.
  std::function<bool(QPoint screen)> onMenuWanted;

  PageView() {
    setOpenLinks(false);
    setFrameShape(QFrame::NoFrame);
  }

  void Show(const QString& address) {
    shownAddress_ = address;
    // A '#' may also be part of the name of a file or folder.
    const bool isWhole = HasScheme(address) || QFileInfo::exists(address);
    const qsizetype mark = isWhole ? -1 : address.lastIndexOf(QLatin1Char('#'));
    const QUrl url = HasScheme(address) ? QUrl(address) : QUrl();
    const QString place = mark >= 0 ? address.mid(mark + 1) : url.fragment();
    path_ = ToLocalPath(mark >= 0 ? address.left(mark) : address);
    // A page may percent-encode the spaces of a name.
    if (!QFileInfo::exists(path_)) path_ = QUrl::fromPercentEncoding(path_.toUtf8());
    const std::optional<QByteArray> page = path_.isEmpty() ? std::nullopt : ReadPage(path_);
    targets_.clear();
    if (!page) {
      if (address.isEmpty()) return clear();
      return setPlainText(
          QCoreApplication::translate("PageView", "This page can't be shown:\n%1").arg(address));
    }
    const QString suffix = QFileInfo(path_).suffix().toLower();
    if (suffix == QLatin1String("htm") || suffix == QLatin1String("html")) {
      setHtml(QStringDecoder::decoderForHtml(*page).decode(*page));
      NumberLinks();
    } else {
      setPlainText(QString::fromUtf8(*page));
    }
    if (!place.isEmpty()) scrollToAnchor(place);
  }

  // Target of a link, as written in the page; a relative one is resolved to a full path.
  QString AddressOf(const QUrl& numbered) const {
    const int number = numbered.path().toInt();
    if (number < 0 || number >= targets_.size()) return {};
    const QString& target = targets_[number];
    if (HasScheme(target) || target.startsWith(QLatin1Char('/'))) return target;
    if (target.startsWith(QLatin1Char('#'))) return path_ + target;
    return QFileInfo(path_).path() + QLatin1Char('/') + target;
  }

 protected:
  // A page is rendered with the link colours of the theme at that time.
  void changeEvent(QEvent* event) override {
    QTextBrowser::changeEvent(event);
    if (event->type() != QEvent::PaletteChange || isDark_ == IsDarkPalette()) return;
    isDark_ = IsDarkPalette();
    const int top = verticalScrollBar()->value();
    Show(shownAddress_);
    verticalScrollBar()->setValue(top);
  }
  void contextMenuEvent(QContextMenuEvent* event) override {
    event->accept();
    if (!onMenuWanted || onMenuWanted(event->globalPos())) return;
    QMenu* const menu = createStandardContextMenu();
    // It would copy the number of the link.
    delete menu->findChild<QAction*>(QStringLiteral("link-copy"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(event->globalPos());
  }
  QVariant loadResource(int type, const QUrl& name) override {
    if (type != QTextDocument::ImageResource && type != QTextDocument::StyleSheetResource)
      return {};
    const QString named = name.isRelative() ? name.path() : ToLocalPath(name.toString());
    if (named.isEmpty()) return {};
    const std::optional<QByteArray> bytes =
        ReadPage(QFileInfo(path_).dir().absoluteFilePath(named));
    return bytes ? QVariant(*bytes) : QVariant();
  }

 private:
  void NumberLinks() {
    struct Link {
      int start;
      int end;
    };
    std::vector<Link> links;
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
      for (auto at = block.begin(); !at.atEnd(); ++at) {
        const QTextFragment part = at.fragment();
        if (part.charFormat().anchorHref().isEmpty()) continue;
        links.push_back({part.position(), part.position() + part.length()});
        targets_.append(part.charFormat().anchorHref());
      }
    }
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    for (std::size_t i = 0; i < links.size(); ++i) {
      cursor.setPosition(links[i].start);
      cursor.setPosition(links[i].end, QTextCursor::KeepAnchor);
      QTextCharFormat format;
      format.setAnchorHref(QStringLiteral("link:%1").arg(i));
      cursor.mergeCharFormat(format);
    }
    cursor.endEditBlock();
  }

  QString shownAddress_;
  QString path_;
  QStringList targets_;
  bool isDark_ = IsDarkPalette();
};

class QtBrowser final : public WidgetPeer<BrowserPeer, PageView> {
 public:
  explicit QtBrowser(CBrowserCtrl& shownBrowser)
      : WidgetPeer(shownBrowser, new PageView), browser_(shownBrowser) {
    new WindowInput(browser_, *widget, kInputSize | kInputFocus | kInputKeys);
    widget->onMenuWanted = [this, own = handle](QPoint screen) {
      return !IsWindow(own) || browser_.NotifyContextMenu({screen.x(), screen.y()}) ||
             !IsWindow(own);
    };
    QObject::connect(widget, &QTextBrowser::anchorClicked, widget,
                     [this](const QUrl& link) { Follow(widget->AddressOf(link)); });
    QtBrowser::OnTextChanged();
    QtBrowser::OnNavigate();
  }

  void OnTextChanged() override {
    WidgetPeer::OnTextChanged();
    if (widget != nullptr) widget->setAccessibleName(ToQt(browser_.GetControlText()));
  }
  void OnNavigate() override {
    if (widget != nullptr) widget->Show(ToQt(browser_.GetAddress()));
  }

 private:
  // May destroy the peer.
  void Follow(const QString& address) {
    const WindowHandle own = handle;
    if (!IsWindow(own) || !browser_.NotifyNavigating(FromQt(address))) return;
    if (IsWindow(own)) OnNavigate();
  }

  CBrowserCtrl& browser_;
};

}  // namespace

std::unique_ptr<BrowserPeer> MakeBrowserPeer(CBrowserCtrl& browser) {
  return std::make_unique<QtBrowser>(browser);
}

}  // namespace tarn
