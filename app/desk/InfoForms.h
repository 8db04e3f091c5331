// Sonarello: small windows that only tell something: about the program, about the song.
#pragma once

#include <QDialog>
#include <QString>
#include <vector>

#include "desk/SongProperties.h"

namespace Sonarello {

/// The properties of a song, as label and text.
class TPropertiesForm : public QDialog {
  Q_OBJECT

 public:
  TPropertiesForm(const std::vector<TSongProperty>& properties, QWidget* parent);
};

/// Name, version, licence and what the program leans on.
class TAboutForm : public QDialog {
  Q_OBJECT

 public:
  TAboutForm(const QString& version, QWidget* parent);
};

}  // namespace Sonarello
