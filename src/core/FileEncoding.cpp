#include "core/FileEncoding.h"

#include <algorithm>
#include <string_view>

#include "core/WriterDSP.h"
#include "core/WriterTexts.h"

namespace Sonarello {

namespace {

constexpr std::size_t HeaderSize = 14;
constexpr std::size_t ChunkHeadSize = 8;
constexpr std::size_t LargestFile = INT32_MAX;  // a longer one could not be opened again

void StoreWord(ByteStore& out, std::size_t value) {
  out.Byte(static_cast<std::uint8_t>(value >> 8));
  out.Byte(static_cast<std::uint8_t>(value));
}

void StoreMark(ByteStore& out, std::string_view mark) {
  for (const char c : mark) out.Byte(static_cast<std::uint8_t>(c));
}

void StoreChunkHead(std::uint8_t* first, std::size_t length) {
  ByteStore out(first);
  StoreMark(out, "MTrk");
  StoreWord(out, length >> 16);
  StoreWord(out, length);
}

}  // namespace

FileEncoding::FileEncoding(Song& s, const Options& o, std::span<const TMidiRouting> table, IMessages& m,
                           const SongHooks& h, const std::string& fileName, int format)
    : song(s),
      options(o),
      messages(m),
      hooks(h),
      nodes(s.Pool),
      routes(s, o, table),
      instrumValue(table.front().InstrumValue),
      desk(s, h),
      songName(SongNameOf(fileName)),
      plan(EmptyPlan(s, format, o.SysexsOnExtraTrack)),
      merged(SourceTracks(s)) {}

std::vector<std::uint8_t> FileEncoding::Run() {
  // A file without tracks could not be opened again.
  if (plan.Tracks.empty() || SourceTracks(song).empty())
    throw EMidiError(CodingText(plan.Branch, false));
  Prepare();
  CountSources();
  AddFronts(plan, {song, options, hooks, routes, desk, songName}, nodes);
  CountFronts();
  order = FileOrder(plan, song, desk);
  return Store();
}

void FileEncoding::Prepare() {
  head = nodes.Head();
  endOfTrack.Command = MetaEvent;
  endOfTrack.DType = LongEvent;
  endOfTrack.MType = MetaEndOfTrack;
  endOfTrack.Position = song.MaxSongPosition;
  plan.SysexTarget = SysexTargetOf(plan, song, routes, options.SysexsOnExtraTrack);
  plan.Effects = PlaceEffects(song, options, instrumValue);

  encoding.RunningStatus = options.SaveMidiRunningMode;
  encoding.LeaveOutPorts = options.DontSaveSMF33;
  encoding.Desk = desk.ChangesAnything() ? &desk : nullptr;
  if (song.SongNameEvent != nullptr && !plan.SourceIsFormat0) {
    encoding.Renamed = song.SongNameEvent;
    encoding.RenamedTo = nodes.Renamed(*song.SongNameEvent, songName);
  }
}

std::span<const TPlacedEvent> FileEncoding::EffectsOf(std::size_t track) const noexcept {
  if (!HoldsEffects(track)) return {};
  return plan.Effects;
}

template <class Begin, class End>
void FileEncoding::EncodeTracks(Begin&& begin, End&& end) {
  if (plan.Branch == TWriterBranch::Split) return EncodeSplit(begin, end);
  for (std::size_t t = 0; t < plan.Tracks.size(); ++t) {
    if (!plan.Tracks[t].Written) continue;
    auto encoder = begin(t);
    if (plan.Branch == TWriterBranch::Tracks)
      WalkTrack(song.MidiTrack[t], [&](const TypMidiEvent& event) { encoder.Put(event); });
    else
      merged.Run([&](const TypMidiEvent& event) {
        const bool madeAnew = plan.SourceIsFormat0 && SplitTarget(event, plan.SysexTarget) < 0;
        if (!madeAnew) encoder.Put(event);
      });
    encoder.Finish(endOfTrack);
    end(t, encoder);
  }
}

template <class Begin, class End>
void FileEncoding::EncodeSplit(Begin&& begin, End&& end) {
  std::vector<decltype(begin(0))> encoders;
  encoders.reserve(plan.Tracks.size());
  for (std::size_t t = 0; t < plan.Tracks.size(); ++t) encoders.push_back(begin(t));
  merged.Run([&](const TypMidiEvent& event) {
    const int target = SplitTarget(event, plan.SysexTarget);
    if (target >= 0) encoders[static_cast<std::size_t>(target)].Put(event);
  });
  for (std::size_t t = 0; t < plan.Tracks.size(); ++t) {
    if (!plan.Tracks[t].Written) continue;
    encoders[t].Finish(endOfTrack);
    end(t, encoders[t]);
  }
}

void FileEncoding::CountSources() {
  encoding.Failure = CodingText(plan.Branch, false);
  TEncoding watched = encoding;
  watched.Descends = [this](const TPlacedEvent& event, const TPlacedEvent& next) {
    TellWrongOrder(event, next);
  };
  sizes.resize(plan.Tracks.size());
  EncodeTracks(
      [&](std::size_t t) {
        const bool watch = plan.Branch == TWriterBranch::Mixed || HoldsEffects(t);
        return TrackEncoder(ByteCounter(), watch ? watched : encoding, EffectsOf(t));
      },
      [&](std::size_t t, const TrackEncoder<ByteCounter>& encoder) {
        // A track with no more than a head and names is empty; the first one stays.
        plan.Tracks[t].Written = t == 0 || encoder.HoldsEvents();
        sizes[t] = encoder.Out().Size();
      });
}

void FileEncoding::TellWrongOrder(const TPlacedEvent& event, const TPlacedEvent& next) {
  if (toldWrongOrder) return;  // one message tells that the song is damaged, more would bury the user
  toldWrongOrder = true;
  const auto isEffect = [&](const TypMidiEvent* e) {
    return std::ranges::find(plan.Effects, e, &TPlacedEvent::Event) != plan.Effects.end();
  };
  const bool ofEffects =
      plan.Branch != TWriterBranch::Mixed || isEffect(event.Event) || isEffect(next.Event);
  const std::string_view mark = ofEffects ? EffectStageMark(plan.Branch, instrumValue) : "F0-Mixdown";
  messages.Show(WrongOrderText(mark, *event.Event, event.Position));
}

template <class Sink>
void FileEncoding::PutFront(TrackEncoder<Sink>& encoder, const TOutputTrack& track) {
  encoder.Put(*head);
  for (const TypMidiEvent* event : track.Front) encoder.Put(*event);
}

void FileEncoding::CountFronts() {
  for (std::size_t t = 0; t < plan.Tracks.size(); ++t) {
    TrackEncoder<ByteCounter> encoder(ByteCounter(), encoding);
    PutFront(encoder, plan.Tracks[t]);
    sizes[t] += encoder.Out().Size();
  }
}

std::vector<std::uint8_t> FileEncoding::Store() {
  encoding.Failure = CodingText(plan.Branch, true);
  std::size_t total = HeaderSize;
  for (const std::size_t t : order) total += ChunkHeadSize + sizes[t];
  if (order.size() > UINT16_MAX || total > LargestFile) throw EMidiError(encoding.Failure);
  std::vector<std::uint8_t> file(total);
  StoreTracks(file);
  return file;
}

void FileEncoding::StoreHeader(std::uint8_t* first) const {
  ByteStore out(first);
  StoreMark(out, "MThd");
  StoreWord(out, 0);
  StoreWord(out, 6);
  StoreWord(out, plan.Branch == TWriterBranch::Mixed ? 0 : 1);
  StoreWord(out, order.size());  // in both bytes: a song may have more than 255 tracks
  StoreWord(out, song.SourceTimeBase);
}

void FileEncoding::StoreTracks(std::vector<std::uint8_t>& file) {
  StoreHeader(file.data());
  std::vector<std::uint8_t*> places(plan.Tracks.size(), nullptr);
  std::uint8_t* at = file.data() + HeaderSize;
  for (const std::size_t t : order) {
    StoreChunkHead(at, sizes[t]);
    places[t] = at + ChunkHeadSize;
    at = places[t] + sizes[t];
  }
  EncodeTracks(
      [&](std::size_t t) {
        TrackEncoder encoder(ByteStore(places[t]), encoding, EffectsOf(t));
        if (places[t] != nullptr) PutFront(encoder, plan.Tracks[t]);
        return encoder;
      },
      [&](std::size_t t, const TrackEncoder<ByteStore>& encoder) {
        // Both passes meet the same events, so that the room is met to the byte.
        if (encoder.Out().End() != places[t] + sizes[t]) throw EMidiError(encoding.Failure);
      });
}

}  // namespace Sonarello
