#include "app/adapters/UpdateCheck.h"

#include <QDesktopServices>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>
#include <utility>

namespace Sonarello {

namespace {

bool IsWebAddress(const QUrl& url) {
  return url.isValid() && !url.host().isEmpty() &&
         (url.scheme() == QStringLiteral("http") || url.scheme() == QStringLiteral("https"));
}

constexpr TUpdateResult Failure() { return {TUpdateOutcome::Failed, {}}; }

}  // namespace

UpdateCheck::UpdateCheck(std::string ownVersion, QObject* parent)
    : QObject(parent), version(std::move(ownVersion)) {
  start.setSingleShot(true);
  limit.setSingleShot(true);
  connect(&start, &QTimer::timeout, this, [this] { Ask(address); });
  connect(&limit, &QTimer::timeout, this, [this] { End(Failure()); });
}

UpdateCheck::~UpdateCheck() { Drop(); }

void UpdateCheck::Start(const QString& url) {
  if (running) return;
  running = true;
  address = url.trimmed();
  start.start(0);
}

void UpdateCheck::Ask(const QString& url) {
  if (url.isEmpty()) return End({TUpdateOutcome::NoEndpoint, {}});
  const QUrl endpoint(url, QUrl::StrictMode);
  if (!IsWebAddress(endpoint)) return End(Failure());
  QNetworkRequest request(endpoint);
  request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                       QNetworkRequest::NoLessSafeRedirectPolicy);
  request.setMaximumRedirectsAllowed(MostRedirects);
  request.setHeader(QNetworkRequest::UserAgentHeader,
                    QStringLiteral("Sonarello/") + QString::fromStdString(version));
  limit.start(TimeLimit);
  reply = network.get(request);
  connect(reply, &QNetworkReply::readyRead, this, &UpdateCheck::Take);
  connect(reply, &QNetworkReply::finished, this, &UpdateCheck::HTTPReqRequestCompleted);
}

/// A list is short: whatever does not end is none.
void UpdateCheck::Take() {
  list += reply->read(LargestList + 1 - list.size());
  if (list.size() > LargestList) End(Failure());
}

void UpdateCheck::HTTPReqRequestCompleted() {
  const bool complete = reply->error() == QNetworkReply::NoError;
  if (complete) Take();
  if (!running) return;  // it was too long
  End(complete ? JudgeUpdateList({list.constData(), static_cast<std::size_t>(list.size())}, version)
               : Failure());
}

void UpdateCheck::Cancel() { Drop(); }

void UpdateCheck::End(const TUpdateResult& result) {
  Drop();
  Q_EMIT Finished(result);
}

void UpdateCheck::Drop() {
  running = false;
  start.stop();
  limit.stop();
  list.clear();
  if (reply == nullptr) return;
  reply->disconnect(this);
  reply->abort();
  reply->deleteLater();
  reply = nullptr;
}

bool OpenWebPage(const std::string& page) {
  const QUrl url(QString::fromStdString(page), QUrl::StrictMode);
  return IsWebAddress(url) && QDesktopServices::openUrl(url);
}

}  // namespace Sonarello
