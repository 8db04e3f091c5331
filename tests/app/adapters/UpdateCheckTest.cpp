#include "app/adapters/UpdateCheck.h"

#include <gtest/gtest.h>

#include <QDesktopServices>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QUrl>
#include <functional>
#include <memory>
#include <optional>

namespace Sonarello {
namespace {

/// A web server of this machine that answers each request as a test says.
class WebServer : public QObject {
 public:
  WebServer() {
    EXPECT_TRUE(server.listen(QHostAddress::LocalHost));
    connect(&server, &QTcpServer::newConnection, this, [this] {
      QTcpSocket* socket = server.nextPendingConnection();
      connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
        request += socket->readAll();
        if (!request.endsWith("\r\n\r\n")) return;
        Requests.append(QString::fromLatin1(request));
        request.clear();
        Serve(*socket);
      });
    });
  }
  [[nodiscard]] QString Address(const QString& path = QStringLiteral("/versions")) const {
    return QStringLiteral("http://127.0.0.1:%1%2").arg(server.serverPort()).arg(path);
  }
  /// Answers every request with a status line and a body.
  void Answer(const QByteArray& status, const QByteArray& body, const QByteArray& more = {}) {
    Serve = [=](QTcpSocket& socket) {
      socket.write("HTTP/1.1 " + status + "\r\n" + more + "Content-Length: " +
                   QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body);
      socket.disconnectFromHost();
    };
  }

  std::function<void(QTcpSocket&)> Serve = [](QTcpSocket&) {};
  QStringList Requests;

 private:
  QTcpServer server;
  QByteArray request;
};

/// Runs a check of version 1.5 to its end; nothing if it did not end.
std::optional<TUpdateResult> Check(UpdateCheck& check, const QString& address) {
  std::optional<TUpdateResult> result;
  QObject::connect(
      &check, &UpdateCheck::Finished, &check, [&](const TUpdateResult& ended) { result = ended; },
      Qt::SingleShotConnection);
  QSignalSpy finished(&check, &UpdateCheck::Finished);
  check.Start(address);
  EXPECT_FALSE(result.has_value()) << "told from within Start";
  EXPECT_TRUE(check.IsRunning());
  if (!finished.wait(10'000)) return std::nullopt;
  EXPECT_EQ(finished.count(), 1);
  EXPECT_FALSE(check.IsRunning());
  return result;
}

std::optional<TUpdateOutcome> Outcome(const QString& address) {
  UpdateCheck check("1.5");
  const auto result = Check(check, address);
  if (!result) return std::nullopt;
  return result->Outcome;
}

constexpr const char* NewerList = "Software-Liste\nSonarello XI\t1.6\thttps://x.invalid/download\n";

TEST(UpdateCheck, ANewerVersionIsToldWithItsPage) {
  WebServer web;
  web.Answer("200 OK", NewerList);
  UpdateCheck check("1.5");
  const auto result = Check(check, web.Address());
  ASSERT_TRUE(result.has_value());
  EXPECT_EQ(result->Outcome, TUpdateOutcome::Newer);
  EXPECT_EQ(result->Line, (TUpdateLine{"1.6", "https://x.invalid/download"}));
  ASSERT_EQ(web.Requests.size(), 1);
  EXPECT_TRUE(web.Requests[0].startsWith(QStringLiteral("GET /versions HTTP/1.1\r\n")));
  EXPECT_TRUE(web.Requests[0].contains(QStringLiteral("User-Agent: Sonarello/1.5\r\n")));
}

TEST(UpdateCheck, TheSameAndAnOlderVersionAreNoNews) {
  WebServer web;
  for (const char* version : {"1.5", "1.5.0", "1.4", "1.05"}) {
    web.Answer("200 OK", QByteArray("Software-Liste\r\nSonarello XI\t") + version + "\r\n");
    EXPECT_EQ(Outcome(web.Address()), TUpdateOutcome::UpToDate) << version;
  }
}

TEST(UpdateCheck, WhatIsNoListFails) {
  WebServer web;
  for (const char* rubbish : {"", "<html>Welcome to the hotel's network</html>", "Software-Liste\n"}) {
    web.Answer("200 OK", rubbish);
    EXPECT_EQ(Outcome(web.Address()), TUpdateOutcome::Failed) << rubbish;
  }
}

TEST(UpdateCheck, AnErrorOfTheServerFailsWhateverItsPageSays) {
  WebServer web;
  for (const char* status : {"404 Not Found", "500 Internal Server Error", "403 Forbidden"}) {
    web.Answer(status, NewerList);
    EXPECT_EQ(Outcome(web.Address()), TUpdateOutcome::Failed) << status;
  }
}

TEST(UpdateCheck, AServerThatHangsUpFails) {
  WebServer web;
  web.Serve = [](QTcpSocket& socket) { socket.abort(); };
  EXPECT_EQ(Outcome(web.Address()), TUpdateOutcome::Failed);
  web.Serve = [](QTcpSocket& socket) {
    socket.write(QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n") + NewerList);
    socket.disconnectFromHost();
  };
  EXPECT_EQ(Outcome(web.Address()), TUpdateOutcome::Failed) << "half a list is none";
}

TEST(UpdateCheck, NobodyThereFails) {
  QString address;
  {
    const WebServer gone;
    address = gone.Address();
  }
  EXPECT_EQ(Outcome(address), TUpdateOutcome::Failed);
}

TEST(UpdateCheck, AnEndlessBodyIsCutOff) {
  WebServer web;
  qint64 sent = 0;
  web.Serve = [&sent](QTcpSocket& socket) {
    socket.write(QByteArray("HTTP/1.1 200 OK\r\n\r\n") + NewerList);
    const QByteArray chunk(64 * 1024, 'x');
    QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, [&sent, &socket, chunk] {
      if (socket.bytesToWrite() == 0) sent += socket.write(chunk);
    });
  };
  EXPECT_EQ(Outcome(web.Address()), TUpdateOutcome::Failed);
  EXPECT_GT(sent, UpdateCheck::LargestList);
  EXPECT_LT(sent, 100 * UpdateCheck::LargestList);
}

TEST(UpdateCheck, AListOfTheGreatestSizeIsRead) {
  WebServer web;
  QByteArray list = NewerList;
  list += QByteArray(UpdateCheck::LargestList - list.size(), '\n');
  web.Answer("200 OK", list);
  EXPECT_EQ(Outcome(web.Address()), TUpdateOutcome::Newer);
  web.Answer("200 OK", list + '\n');
  EXPECT_EQ(Outcome(web.Address()), TUpdateOutcome::Failed);
}

TEST(UpdateCheck, AServerThatSaysNothingIsWaitedForNotForever) {
  WebServer web;
  UpdateCheck check("1.5");
  check.TimeLimit = 50;
  const auto result = Check(check, web.Address());
  ASSERT_TRUE(result.has_value());
  EXPECT_EQ(result->Outcome, TUpdateOutcome::Failed);
  EXPECT_EQ(web.Requests.size(), 1);
}

TEST(UpdateCheck, AMovedListIsFollowed) {
  WebServer web;
  web.Serve = [&web](QTcpSocket& socket) {
    const bool moved = web.Requests.back().startsWith(QStringLiteral("GET /old "));
    socket.write(moved ? QByteArray("HTTP/1.1 302 Found\r\nLocation: /new\r\nContent-Length: 0\r\n"
                                    "Connection: close\r\n\r\n")
                       : QByteArray("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n") + NewerList);
    socket.disconnectFromHost();
  };
  EXPECT_EQ(Outcome(web.Address(QStringLiteral("/old"))), TUpdateOutcome::Newer);
  EXPECT_EQ(web.Requests.size(), 2);
}

TEST(UpdateCheck, RedirectionsInACircleOrOutOfTheWebFail) {
  WebServer web;
  web.Answer("302 Found", "", "Location: /versions\r\n");
  EXPECT_EQ(Outcome(web.Address()), TUpdateOutcome::Failed);
  // Qt asks again by itself when a connection was just closed.
  EXPECT_LE(web.Requests.size(), 3 * UpdateCheck::MostRedirects);
  web.Answer("302 Found", "", "Location: file:///etc/hostname\r\n");
  EXPECT_EQ(Outcome(web.Address()), TUpdateOutcome::Failed);
}

TEST(UpdateCheck, WithoutAnAddressNothingIsAsked) {
  EXPECT_EQ(Outcome(QString()), TUpdateOutcome::NoEndpoint);
  EXPECT_EQ(Outcome(QStringLiteral("  ")), TUpdateOutcome::NoEndpoint);
}

TEST(UpdateCheck, OnlyAddressesOfTheWebAreAsked) {
  for (const char* address :
       {"file:///etc/hostname", "versions", "ftp://127.0.0.1/", "http://", "http://exa mple/"})
    EXPECT_EQ(Outcome(QString::fromLatin1(address)), TUpdateOutcome::Failed) << address;
}

TEST(UpdateCheck, ASecondStartWaitsForTheFirst) {
  WebServer web;
  web.Answer("200 OK", NewerList);
  UpdateCheck check("1.5");
  QSignalSpy finished(&check, &UpdateCheck::Finished);
  check.Start(web.Address());
  check.Start(QString());
  ASSERT_TRUE(finished.wait(10'000));
  EXPECT_EQ(finished.count(), 1);
  EXPECT_EQ(web.Requests.size(), 1);
  EXPECT_EQ(Check(check, web.Address())->Outcome, TUpdateOutcome::Newer) << "it can be used again";
}

TEST(UpdateCheck, ACancelledCheckSaysNothing) {
  WebServer web;
  web.Answer("200 OK", NewerList);
  UpdateCheck check("1.5");
  QSignalSpy finished(&check, &UpdateCheck::Finished);
  check.Start(web.Address());
  check.Cancel();
  EXPECT_FALSE(check.IsRunning());
  UpdateCheck other("1.5");
  EXPECT_EQ(Check(other, web.Address())->Outcome, TUpdateOutcome::Newer);
  EXPECT_EQ(finished.count(), 0);
}

TEST(UpdateCheck, AWindowThatGoesInTheMiddleOfACheckIsNotCalled) {
  WebServer web;
  auto check = std::make_unique<UpdateCheck>("1.5");
  web.Serve = [&check](QTcpSocket&) { check.reset(); };
  check->Start(web.Address());
  QTRY_VERIFY_WITH_TIMEOUT(check == nullptr, 10'000);
}

/// Takes the place of the user's browser.
class Browser : public QObject {
  Q_OBJECT

 public:
  Browser() { QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "Open"); }
  ~Browser() override { QDesktopServices::unsetUrlHandler(QStringLiteral("https")); }
  QStringList Opened;

 public Q_SLOTS:
  void Open(const QUrl& url) { Opened.append(url.toString()); }
};

TEST(UpdateCheck, ThePageIsOpenedInTheBrowserAndNothingElseIs) {
  Browser browser;
  EXPECT_TRUE(OpenWebPage("https://x.invalid/download?a=1"));
  EXPECT_EQ(browser.Opened, QStringList{QStringLiteral("https://x.invalid/download?a=1")});
  EXPECT_FALSE(OpenWebPage("file:///etc/hostname"));
  EXPECT_FALSE(OpenWebPage("https://"));
  EXPECT_FALSE(OpenWebPage(""));
  EXPECT_EQ(browser.Opened.size(), 1);
}

}  // namespace
}  // namespace Sonarello

#include "UpdateCheckTest.moc"
