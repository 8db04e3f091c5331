// Settings that the tests of the settings window begin with.
#pragma once

#include "desk/OptionsEdit.h"

namespace Sonarello {

/// Four routes, one of them on an output that is not connected.
inline TOptionsInput Demo() {
  TOptionsInput input;
  input.SongOptions.MultiMidi = true;
  input.SongOptions.MinNoteLength = 10;
  input.SongOptions.SaveMidiRunningMode = true;
  input.SongOptions.YamahaDSPsFromPosition = 240;
  input.Desk.VirtualSynthDelay = 120;
  input.Desk.RecQuantize = 4;
  input.Desk.RecLatency = 12;
  input.Desk.UseGermanChords = true;
  input.Desk.MidiInputName = "UM-ONE MIDI 1";
  input.Desk.LyricsFontName = "Roboto";
  input.Desk.LyricsFontColor = 0xEFF3F7;
  input.Routes[0] = {"Yamaha Genos", "UM-ONE MIDI 1"};
  input.Routes[1] = {"Roland SC-88Pro", "UM-ONE MIDI 2"};
  input.Routes[2] = {"Ketron SD2/SD4", "MIDISPORT 2x2 Port A"};
  input.Routes[3] = {"GM Soundset", "VSTi 1: SoundCanvas-Player"};
  input.Outputs = {"UM-ONE MIDI 1", "UM-ONE MIDI 2", "VSTi 1: SoundCanvas-Player"};
  input.Inputs = {"UM-ONE MIDI 1", "Keystation"};
  return input;
}

}  // namespace Sonarello
