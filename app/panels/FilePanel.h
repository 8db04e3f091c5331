// The song's file: name, whether it is changed, format, resolution, length.
#pragma once

#include "app/panels/Panel.h"

namespace Sonarello {

struct FileView {
  bool song = false;
  QString name = {};  ///< without its folder; empty for a song that has no file yet
  QString path = {};  ///< whole, for the tip
  bool modified = false;
  int format = 0;  ///< of the Standard MIDI File
  int ticksPerQuarter = 480;
  qint64 length = 0;  ///< ms
};

class FilePanel : public Panel {
  Q_OBJECT
 public:
  explicit FilePanel(QWidget* parent = nullptr);

  void SetView(const FileView& view);

  /// The lines as shown, the name not yet shortened.
  [[nodiscard]] QString NameLine() const;
  [[nodiscard]] QString FactsLine() const;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void Refresh() override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void PaintName(QPainter& painter, const QRect& line) const;

  FileView view_;
};

}  // namespace Sonarello
