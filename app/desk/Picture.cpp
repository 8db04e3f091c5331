#include "app/desk/Picture.h"

#include <QCoreApplication>
#include <QPixmap>
#include <QTimer>

#include "app/desk/MainForm.h"

namespace Sonarello {

namespace {

constexpr int Interval = 50;        ///< ms
constexpr int SettleTime = 300;     ///< ms from the song to the picture, so that all panels are painted
constexpr int LongestWait = 60000;  ///< ms

}  // namespace

void TakePicture(TMainForm& window, const QString& file) {
  auto* const timer = new QTimer(&window);
  auto waited = std::make_shared<int>(0);
  QObject::connect(timer, &QTimer::timeout, &window, [&window, file, timer, waited] {
    *waited += Interval;
    if (window.Work().desk.song.MidiFileLoaded && window.IsIdle()) {
      timer->stop();
      QTimer::singleShot(SettleTime, &window,
                         [&window, file] { QCoreApplication::exit(window.grab().save(file) ? 0 : 1); });
    } else if (*waited >= LongestWait) {
      QCoreApplication::exit(1);
    }
  });
  timer->start(Interval);
}

}  // namespace Sonarello
