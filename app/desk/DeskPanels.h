// Sonarello: the panels of the main window.
#pragma once

class QWidget;

namespace Sonarello {

class Banner;
class ControllerPanel;
class DropCard;
class EffectRow;
class FilePanel;
class LoopPanel;
class LyricBar;
class PositionDisplay;
class SongSlider;
class StatusBar;
class StripRow;
class TempoPanel;
class TransportPanel;
class TransposePanel;
class WindowSwitches;

/// The parts of the desk. They are children of the window, which lives as long as they do.
struct TDeskPanels {
  QWidget* content = nullptr;
  Banner* banner = nullptr;
  TransportPanel* transport = nullptr;
  PositionDisplay* display = nullptr;
  TempoPanel* tempo = nullptr;
  TransposePanel* transposePanel = nullptr;
  FilePanel* filePanel = nullptr;
  SongSlider* slider = nullptr;
  LoopPanel* loopPanel = nullptr;
  StripRow* stripRow = nullptr;
  ControllerPanel* controller = nullptr;
  EffectRow* effectRow = nullptr;
  LyricBar* lyricBar = nullptr;
  StatusBar* status = nullptr;
  DropCard* card = nullptr;
  WindowSwitches* switches = nullptr;
};

}  // namespace Sonarello
