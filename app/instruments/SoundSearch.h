// The search over all sounds: a field, and the panel with what it found.
#pragma once

#include <QFrame>
#include <QLineEdit>
#include <QString>

class QLabel;
class QListView;

namespace Sonarello {

class HitDelegate;
class HitModel;

/// An edit field with a looking glass, and how many sounds were found.
class SearchField : public QLineEdit {
  Q_OBJECT

 public:
  explicit SearchField(QWidget* parent = nullptr);

  /// What stands at the right end: how many hits, or the shortcut.
  void SetNote(const QString& text);

 Q_SIGNALS:
  /// Arrow keys: so many hits further.
  void stepped(int hits);
  void accepted();
  /// Escape; the field was not empty.
  void left();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void LayOut();

  QString note;
};

/// What a search found, over the lists (`Panel_SoundsCover`).
class SearchPanel : public QFrame {
  Q_OBJECT

 public:
  SearchPanel(HitModel& hits, QWidget* parent);

  /// Shows the hits of a text in the model, or that there are none.
  void ShowHits(const QString& text);
  /// Selects the hit so many rows further.
  void Step(int rows);
  [[nodiscard]] QListView* List() const { return list; }
  [[nodiscard]] QSize sizeHint() const override;

 Q_SIGNALS:
  /// A hit was selected (SelectedSoundsListClick).
  void chosen(int row);
  void closed();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void LayOut();

  HitModel& model;
  HitDelegate* delegate;
  QLabel* head;
  QLabel* empty;
  QLabel* foot;
  QListView* list;
};

}  // namespace Sonarello
