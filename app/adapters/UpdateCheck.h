// Sonarello: asks the web whether there is a newer version.
#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QString>
#include <QTimer>

#include "desk/UpdateList.h"

namespace Sonarello {

/// Fetches the list of versions. One check at a time; nothing blocks.
class UpdateCheck : public QObject {
  Q_OBJECT

 public:
  /// Settings key of the list's address. Without it, nothing is asked.
  static constexpr const char* UpdateUrlKey = "UpdateUrl";
  static constexpr qint64 LargestList = 256 * 1024;  ///< bytes
  static constexpr int MostRedirects = 5;

  explicit UpdateCheck(QString ownVersion, QObject* parent = nullptr);

  int TimeLimit = 15'000;  ///< ms for the whole check

  /// Asks an http or https address. A check that runs already goes on instead.
  void Start(const QString& url);
  [[nodiscard]] bool IsRunning() const noexcept { return reply != nullptr; }
  /// Ends a check without a word.
  void Cancel();

 Q_SIGNALS:
  /// A check ended. Told from the event loop, never from within `Start`.
  void Finished(const Sonarello::TUpdateResult& result);

 private Q_SLOTS:
  void HTTPReqRequestCompleted();
  void Take();

 private:
  void End(const TUpdateResult& result);
  void Drop();

  QString version;
  QNetworkAccessManager network;
  QTimer limit;
  QNetworkReply* reply = nullptr;
  QByteArray list;
};

/// Opens a web page in the user's browser; false if there is none.
bool OpenWebPage(const std::string& address);

}  // namespace Sonarello
