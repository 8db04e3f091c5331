#include "core/SysexTracks.h"

#include "helpers/SysexSong.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(SongName, IsTheFilesNameWithoutFolderAndExtension) {
  EXPECT_EQ(SongNameOf("/home/me/My Song.mid"), "My Song");
  EXPECT_EQ(SongNameOf("My.Song.mid"), "My.Song");
  EXPECT_EQ(SongNameOf("/über/Süß.mid"), "Süß");
  EXPECT_EQ(SongNameOf("/a/Lied.kä"), "Lie");
  EXPECT_EQ(SongNameOf("/a/.mid"), "");
  EXPECT_EQ(SongNameOf("/a/mid"), "mid");
  EXPECT_EQ(SongNameOf("äöü"), "äöü");
  EXPECT_EQ(SongNameOf("\x80\x80\x80\x80\x80"), "\x80\x80\x80\x80\x80");
  EXPECT_EQ(SongNameOf("/a/"), "");
  EXPECT_EQ(SongNameOf(""), "");
}

TEST(SongName, IsPutInWhereThereIsNone) {
  SysexSong bench(27);
  bench.options.InsertSongName = true;
  bench.song.MidiFileName = "/songs/Rosen.mid";
  PtrMidiEvent first = bench.Note(0, 0);
  bench.Name(1, 0, "Piano");
  bench.Fit();
  PtrMidiEvent name = bench.song.SongNameEvent;
  ASSERT_NE(name, nullptr);
  EXPECT_EQ(name->PrevEvent, bench.Track(0).TrkFirstEvent);
  EXPECT_EQ(name->NextEvent, first);
  EXPECT_EQ(name->Position, 0);
  EXPECT_TRUE(name->IsMeta(MetaTrackName));
  EXPECT_EQ(name->Meta.Text(), "Rosen");
  EXPECT_EQ(name->DLength, 5);
  EXPECT_EQ(bench.Track(0).TrkName, "Rosen");
  EXPECT_THAT(bench.Told(ChangeKind::Inserted), ElementsAre("0/0 the song's name"));
}

TEST(SongName, IsTheSongsOwnWhereThereIsOne) {
  SysexSong bench(27);
  bench.options.InsertSongName = true;
  PtrMidiEvent removed = bench.Name(0, 0, "Old");
  MarkRemoved(removed);
  PtrMidiEvent own = bench.Name(0, 50, "Own");
  bench.Name(0, 60, "Second");
  bench.Fit();
  EXPECT_EQ(bench.song.SongNameEvent, own);
  EXPECT_THAT(bench.log.Changes(), IsEmpty());
}

TEST(SongName, IsForgottenWhenItIsNotWanted) {
  SysexSong bench(27);
  bench.song.SongNameEvent = bench.Name(0, 0, "Own");
  bench.Fit();
  EXPECT_EQ(bench.song.SongNameEvent, nullptr);
}

TEST(SongName, IsPutInWithAutoSysexOffToo) {
  SysexSong bench(0);
  bench.options.AutoSysex = false;
  bench.options.InsertSongName = true;
  bench.song.MidiFileName = "x.mid";
  bench.Fit();
  EXPECT_EQ(bench.song.SongNameEvent->Meta.Text(), "x");
}

TEST(SongName, AwaitsANameFromAFileWithoutOne) {
  SysexSong bench(27);
  bench.options.InsertSongName = true;
  bench.song.MidiFileName = ".mid";
  bench.Fit();
  ASSERT_NE(bench.song.SongNameEvent, nullptr);
  EXPECT_TRUE(bench.song.SongNameEvent->IsRemoved());
  EXPECT_THAT(bench.log.Changes(), IsEmpty());
}

struct ExtraTrackSong : SysexSong {
  explicit ExtraTrackSong(int instrument, int tracks = 3) : SysexSong(instrument, tracks) {
    options.SysexsOnExtraTrack = true;
    routes.Table[0].Delay = 25;
  }
};

TEST(ExtraSysexTrack, TakesAllSysexesInPositionOrder) {
  ExtraTrackSong bench(27);
  bench.Sysex(1, 10, "7D 01 F7");
  bench.Sysex(1, 20, "7D 02 F7");
  bench.Note(1, 30);
  bench.Sysex(2, 5, "7D 03 F7");
  bench.Sysex(2, 10, "7D 04 F7");
  bench.Note(2, 30);
  bench.Sysex(2, 20000, "7D 05 F7");
  bench.Fit();
  ASSERT_EQ(bench.song.NumberOfSourceTracks, 4);
  EXPECT_EQ(bench.song.MidiTrack.size(), 4u);
  EXPECT_EQ(bench.song.KeySignArray.size(), 4u);
  EXPECT_EQ(bench.song.SysexTrack, 3);
  EXPECT_THAT(bench.Live(3), ElementsAre("5: 7D 03 F7", "10: 7D 01 F7", "10: 7D 04 F7", "20: 7D 02 F7",
                                         "20000: 7D 05 F7"));
  EXPECT_THAT(bench.Live(1), IsEmpty());
  EXPECT_THAT(bench.Live(2), IsEmpty());
  EXPECT_EQ(bench.Track(1).TrkEventCounter, 5);
  EXPECT_EQ(bench.Told(ChangeKind::Moved).size(), 5u);
  EXPECT_EQ(bench.Told(ChangeKind::Moved)[0], "3/5 sysex on a track of its own");
}

TEST(ExtraSysexTrack, IsSetUpLikeTheOthers) {
  for (const bool german : {false, true}) {
    GermanLanguage = german;
    ExtraTrackSong bench(27);
    bench.Note(2, 30);
    bench.Sysex(1, 10, "7D 01 F7");
    bench.Note(1, 30);
    bench.Fit();
    GermanLanguage = false;
    const std::string name = german ? "Sysex-Spur" : "Sysex track";
    const TMyTrack& track = bench.Track(3);
    EXPECT_EQ(track.TrkName, name);
    EXPECT_EQ(track.TrkDelay, 25);
    EXPECT_EQ(track.TrkMidiIndex, -1);
    EXPECT_EQ(track.TrkListIndex, 1);
    EXPECT_EQ(track.TrkPlayEvent, track.TrkFirstEvent);
    PtrMidiEvent meta = track.TrkFirstEvent->NextEvent;
    EXPECT_TRUE(meta->IsMeta(MetaTrackName));
    EXPECT_EQ(meta->Meta.Text(), name);
    EXPECT_EQ(meta->DLength, static_cast<std::int32_t>(name.size()));
    EXPECT_EQ(meta->Position, 0);
  }
}

TEST(ExtraSysexTrack, ReplacesALastTrackThatHoldsOnlyAName) {
  ExtraTrackSong bench(27);
  bench.Sysex(1, 10, "7D 01 F7");
  bench.Note(1, 30);
  bench.Name(2, 0, "Setup");
  bench.Sysex(2, 10, "7D 02 F7");
  bench.Fit();
  EXPECT_EQ(bench.song.NumberOfSourceTracks, 3);
  EXPECT_EQ(bench.song.MidiTrack.size(), 3u);
  EXPECT_EQ(bench.song.KeySignArray.size(), 3u);
  EXPECT_EQ(bench.song.SysexTrack, 2);
  EXPECT_EQ(bench.Track(2).TrkName, "Sysex track");
  EXPECT_THAT(bench.Live(2), ElementsAre("10: 7D 01 F7", "10: 7D 02 F7"));
}

TEST(ExtraSysexTrack, LeavesNoPointerToTheTrackThatItReplaced) {
  ExtraTrackSong bench(1);
  bench.Note(1, 30);
  PtrMidiEvent name = bench.Name(2, 0, "Setup");
  bench.song.RolandInsFxOnSysex = bench.Sysex(2, 10, "41 10 42 12 40 41 22 01 5C F7");
  bench.song.RolandInsFxOnTrack = 2;
  bench.song.MotifMartor = name;
  const std::size_t live = bench.song.Pool.Live();
  bench.Fit();
  EXPECT_EQ(bench.song.MotifMartor, nullptr);
  EXPECT_EQ(bench.song.RolandInsFxOnTrack, 2);
  EXPECT_EQ(bench.PlaceOf(bench.song.RolandInsFxOnSysex), "2/10");
  std::size_t linked = 0;
  for (const TMyTrack& track : bench.song.MidiTrack)
    ForEachEvent(track, [&](PtrMidiEvent) { ++linked; });
  EXPECT_EQ(bench.song.Pool.Live(), linked);
  EXPECT_GT(linked, live);
}

TEST(ExtraSysexTrack, TakesThePlaceholdersAndTheirTablesAlong) {
  ExtraTrackSong bench(1);
  bench.Note(2, 30);
  bench.Sysex(1, 4, "41 10 42 12 40 1A 15 02 0F F7");
  bench.Note(1, 30);
  bench.Fit();
  for (int part = 0; part < 16; ++part) {
    PtrMidiEvent e = bench.song.RolandDrumSysexArray[static_cast<std::size_t>(part)];
    EXPECT_EQ(bench.PlaceOf(e), "3/" + std::to_string(52 + 2 * part));
    EXPECT_EQ(e->DLength, part == 10 ? 10 : 0);
  }
  EXPECT_EQ(bench.song.RolandDelaySysexTrack, 3);
  EXPECT_EQ(bench.PlaceOf(bench.song.RolandDelayTimeSysexEvent), "3/80");
}

TEST(ExtraSysexTrack, LeavesTracksThatAreHeldOutAlone) {
  ExtraTrackSong bench(27);
  bench.Note(2, 30);
  bench.Track(1).TrkIgnore = true;
  bench.Sysex(1, 10, "7D 01 F7");
  bench.Fit();
  EXPECT_THAT(bench.Live(1), ElementsAre("10: 7D 01 F7"));
  EXPECT_THAT(bench.Live(3), IsEmpty());
}

TEST(ExtraSysexTrack, IsNotMadeForAFormat0File) {
  ExtraTrackSong one(27, 1);
  one.Sysex(0, 10, "7D 01 F7");
  one.Fit();
  EXPECT_EQ(one.song.NumberOfSourceTracks, 1);

  ExtraTrackSong split(27, 17);
  split.song.MidiFileOrgFormat = 0;
  split.Sysex(10, 10, "7D 01 F7");
  split.Fit();
  EXPECT_EQ(split.song.NumberOfSourceTracks, 17);
}

TEST(ExtraSysexTrack, IsMadeWithAutoSysexOffToo) {
  ExtraTrackSong bench(0);
  bench.options.AutoSysex = false;
  bench.Note(2, 30);
  bench.Sysex(0, 10, XGReset);
  bench.Fit();
  EXPECT_THAT(bench.Live(3), ElementsAre(std::string("10: ") + XGReset));
}

TEST(ExtraSysexTrack, TellsAFailedAllocationInEnglishInBothLanguages) {
  for (const bool german : {false, true}) {
    GermanLanguage = german;
    ExtraTrackSong bench(27);
    for (int t = 0; t < 3; ++t) EndTrack(bench.song.Pool, bench.Track(t), bench.song.MaxSongPosition);
    bench.song.Pool.FailAt(1);
    EXPECT_THROW(bench.functions.CheckSysexs(), EMidiError);
    EXPECT_THAT(bench.messages.Shown, ElementsAre("Error allocating memory!"));
    GermanLanguage = false;
  }
}

}  // namespace
}  // namespace Sonarello
