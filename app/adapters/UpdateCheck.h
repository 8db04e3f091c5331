// Sonarello: asks the web whether there is a newer version.
#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <string>

#include "desk/UpdateList.h"

class QNetworkReply;

namespace Sonarello {

/// Fetches the list of versions. One check at a time; nothing blocks.
class UpdateCheck : public QObject {
  Q_OBJECT

 public:
  /// Settings key of the list's address. Without it, nothing is asked.
  static constexpr const char* UpdateUrlKey = "UpdateUrl";
  static constexpr qint64 LargestList = 256 * 1024;  ///< bytes
  static constexpr int MostRedirects = 5;

  explicit UpdateCheck(std::string ownVersion, QObject* parent = nullptr);
  ~UpdateCheck() override;

  int TimeLimit = 15'000;  ///< ms for the whole check

  /// Asks an http or https address. A check that runs already goes on instead.
  void Start(const QString& url);
  [[nodiscard]] bool IsRunning() const noexcept { return running; }
  /// Ends a check without a word.
  void Cancel();

 Q_SIGNALS:
  /// A check ended. Told from the event loop, never from within `Start`.
  void Finished(const Sonarello::TUpdateResult& result);

 private:
  void Ask(const QString& url);
  void Take();
  void HTTPReqRequestCompleted();
  void End(const TUpdateResult& result);
  void Drop();

  std::string version;
  QNetworkAccessManager network;
  QTimer start;
  QTimer limit;
  QPointer<QNetworkReply> reply;
  QString address;
  QByteArray list;
  bool running = false;
};

/// Opens a web page (http or https) in the user's browser; false if that failed.
bool OpenWebPage(const std::string& address);

}  // namespace Sonarello
