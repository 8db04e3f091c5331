#include "app/adapters/QtMessageDialog.h"

#include <QClipboard>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QScrollArea>
#include <algorithm>

#include "app/controls/Icons.h"
#include "app/controls/Metrics.h"
#include "app/controls/Theme.h"

namespace Sonarello {
namespace {

constexpr int leastWidth = 420, mostWidth = 560, padding = 20, iconSize = 32, gap = 16;
constexpr int linePitch = 18, mostCharacters = 60;
constexpr int mostLines = 24;  // further ones are scrolled to

/// Place of the last character that a line may hold; lines break behind a blank.
qsizetype EndOfLine(const QString& line, int most, double width, const QFontMetricsF& metrics) {
  qsizetype end = std::min<qsizetype>(line.size(), most);
  while (end > 1 && metrics.horizontalAdvance(line.left(end)) > width) --end;
  if (end == line.size()) return end;
  qsizetype blank = line.lastIndexOf(QLatin1Char(' '), end);
  // A sign that stands by itself stays with its word.
  while (blank > 0 && blank + 1 < line.size() && line[blank + 1].isPunct() &&
         (blank + 2 == line.size() || line[blank + 2] == QLatin1Char(' ')))
    blank = line.lastIndexOf(QLatin1Char(' '), blank - 1);
  if (blank > 0) return blank;
  // A long path breaks in front of a folder.
  const qsizetype slash = line.lastIndexOf(QLatin1Char('/'), end - 1);
  return slash > end / 2 ? slash : end;
}

/// The text with the line height of messages, to which a label does not hold by itself.
class MessageText : public QLabel {
 public:
  MessageText(const QString& text, QStringList shown, QWidget* parent)
      : QLabel(text, parent), lines(std::move(shown)) {
    setTextFormat(Qt::PlainText);
  }
  [[nodiscard]] QSize sizeHint() const override {
    const QFontMetricsF fontMetrics(metrics().font(Role::Body));
    double widest = 0;
    for (const QString& line : lines) widest = std::max(widest, fontMetrics.horizontalAdvance(line));
    return {static_cast<int>(widest) + 1, metrics().px(linePitch) * static_cast<int>(lines.size())};
  }
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setFont(metrics().font(Role::Body));
    painter.setPen(th().tx1);
    QRect line(0, 0, width(), metrics().px(linePitch));
    for (const QString& text : lines) {
      painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
      line.translate(0, line.height());
    }
  }

 private:
  QStringList lines;
};

/// The kind of a message at one glance, drawn on a grid of 16 × 16.
class MessageIcon : public QWidget {
 public:
  MessageIcon(TMessageKind shown, QWidget* parent) : QWidget(parent), kind(shown) {
    setFixedSize(metrics().px(iconSize), metrics().px(iconSize));
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(width() / 16.0, height() / 16.0);
    painter.setPen(QPen(Ink(), 1.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(Path());
  }

 private:
  [[nodiscard]] QColor Ink() const {
    if (kind == TMessageKind::Error) return th().err;
    return kind == TMessageKind::Warning ? th().warn : th().acc;
  }
  [[nodiscard]] QPainterPath Path() const {
    QPainterPath path;
    if (kind == TMessageKind::Warning || kind == TMessageKind::Error) return IconPath(Icon::Warning);
    path.addEllipse(QPointF(8, 8), 6.2, 6.2);
    if (kind == TMessageKind::Question) {
      path.moveTo(6.1, 6.5);
      path.cubicTo(6.1, 4.2, 9.9, 4.2, 9.9, 6.4);
      path.cubicTo(9.9, 7.9, 8, 7.9, 8, 9.3);
      path.moveTo(8, 11.4);
      path.lineTo(8, 11.41);
    } else {
      path.moveTo(8, 7.4);
      path.lineTo(8, 11.2);
      path.moveTo(8, 4.9);
      path.lineTo(8, 4.91);
    }
    return path;
  }

  TMessageKind kind;
};

}  // namespace

QStringList MessageLines(const QString& text, int most, double width, const QFontMetricsF& metrics) {
  QStringList lines;
  for (const QString& paragraph : text.split(QLatin1Char('\n'))) {
    QString rest = paragraph;
    do {
      const qsizetype end = EndOfLine(rest, most, width, metrics);
      lines.append(rest.left(end));
      rest.remove(0, end);
      if (rest.startsWith(QLatin1Char(' '))) rest.remove(0, 1);
    } while (!rest.isEmpty());
  }
  return lines;
}

QtMessageDialog::QtMessageDialog(const TMessage& message, QWidget* parent)
    : QDialog(parent), text(message.Text) {
  const Metrics& m = metrics();
  setWindowTitle(QStringLiteral("Sonarello"));
  setAccessibleName(text);
  setWindowModality(Qt::ApplicationModal);

  auto* head = new QHBoxLayout;
  head->setSpacing(m.px(gap));
  head->addWidget(new MessageIcon(message.Kind, this), 0, Qt::AlignTop);
  head->addWidget(NewText(message), 1, Qt::AlignVCenter);

  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(m.px(padding), m.px(padding), m.px(padding), m.px(padding));
  all->setSpacing(m.px(padding));
  all->addLayout(head);
  all->addLayout(NewButtons(message));
  const int width = std::clamp(sizeHint().width(), m.px(leastWidth), m.px(mostWidth));
  setFixedSize(width, sizeHint().height());
}

QWidget* QtMessageDialog::NewText(const TMessage& message) {
  const Metrics& m = metrics();
  const double width = m.px(mostWidth) - 2 * m.px(padding) - m.px(iconSize) - m.px(gap);
  const QFontMetricsF fontMetrics(m.font(Role::Body));
  QStringList lines = MessageLines(message.Text, mostCharacters, width, fontMetrics);
  if (lines.size() <= mostLines) return new MessageText(message.Text, std::move(lines), this);

  auto* area = new QScrollArea(this);
  area->setFrameShape(QFrame::NoFrame);
  area->setFixedHeight(m.px(linePitch) * mostLines);
  area->setWidgetResizable(true);
  auto* scrolled = new MessageText(message.Text, std::move(lines), area);
  area->setMinimumWidth(std::min(scrolled->sizeHint().width() + m.px(gap), static_cast<int>(width)));
  area->setWidget(scrolled);
  area->setFocusPolicy(Qt::StrongFocus);
  area->setAccessibleName(message.Text);
  return area;
}

QLayout* QtMessageDialog::NewButtons(const TMessage& message) {
  const Metrics& m = metrics();
  auto* row = new QHBoxLayout;
  row->setSpacing(m.px(8));
  row->addStretch(1);
  const auto add = [&](const QString& caption, bool isSafe, int result) {
    auto* button = new QPushButton(caption, this);
    button->setMinimumWidth(m.px(88));
    button->setDefault(isSafe);
    if (isSafe) button->setFocus();
    connect(button, &QPushButton::clicked, this, [this, result] { done(result); });
    row->addWidget(button);
  };
  const bool isDecision = !message.Refuse.isEmpty();
  if (isDecision) add(message.Refuse, true, Rejected);
  add(message.Accept, !isDecision, Accepted);
  return row;
}

void QtMessageDialog::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    QGuiApplication::clipboard()->setText(text);
    return;
  }
  QDialog::keyPressEvent(event);
}

}  // namespace Sonarello
