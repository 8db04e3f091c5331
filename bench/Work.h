// Sonarello: the pieces of work that are measured, each in a process of its own.
#pragma once

#include <string>
#include <vector>

namespace Sonarello::Bench {

/// Does one piece of work and prints its figures, separated by blanks:
///   floor FILE                        seconds to link the nodes, seconds to write them, events
///   peer FILE                         seconds that libsmf takes to load the file from memory
///   decode FILE                       seconds of two `DecodeMidiData`, one after the other
///   open FILE INSTRUMENT              seconds of two `OpenMidiFile`, one after the other
///   encode FILE INSTRUMENT FORMAT     seconds of `Encode`, bytes
///   save FILE INSTRUMENT FORMAT       seconds of `Save`
///   sounds INSTRUMENT                 seconds to load the tables, their bytes, seconds to name a
///                                     sound and to find it in a hash map
///   player FILE INSTRUMENT            seconds of a plain walk, of winding to the end, of a live change
///                                     of tempo, of a pass with nothing due
///   render FILE                       seconds of our render, of the bare synthesizer, and of sound
///   explain                           seconds to explain 100,000 random sysexes, as many that rules
///                                     know, and these with every rule tried
///   events FILE TRACK                 figures of the event list, see Events.h
///   memory FILE INSTRUMENT            bytes of resident memory that the open song takes
/// INSTRUMENT is a catalogue number. False for anything else.
bool Measure(const std::vector<std::string>& arguments);

}  // namespace Sonarello::Bench
