// Save, open and export with all that is asked and answered, as whole sessions.
#include "files/export_driver.h"
#include "support/program_test.h"

namespace marlune {
namespace {

// In the folder of the test, so that names are short.
struct FileSession : ProgramTest {
    FileSession() {
        std::filesystem::current_path(folder.path);
        session.marksAnew = false;
        session.verbs["named"] = [this](int number, int, int) {
            program.shell.fileNames.push_back("song" + std::to_string(number) + ".mlp");
        };
        session.verbs["midi-named"] = [this](int number, int, int) {
            program.shell.fileNames.push_back("song" + std::to_string(number) + ".mid");
        };
        session.verbs["yes"] = [this](int, int, int) { program.shell.answers.push_back(BoxAnswer::yes); };
        session.verbs["no"] = [this](int, int, int) { program.shell.answers.push_back(BoxAnswer::no); };
        session.verbs["ok"] = [this](int, int, int) { program.shell.answers.push_back(BoxAnswer::ok); };
    }
    ~FileSession() override { std::filesystem::current_path("/"); }

    test::Session session{program};
};

TEST_F(FileSession, SaveAndOpen) {
    expectSession(session, R"(
- click accent 0
menu mnuFileSavePatt: save(untitled Marlune pattren (*.mlp)|*.mlp mlp)
named 1:
menu mnuFileSavePatt: save(untitled Marlune pattren (*.mlp)|*.mlp mlp) title "Marlune 200Q [ song1.mlp ]" |
    changed0
- click accent 1
menu mnuFileSavePatt: changed0
named 1; named 2; down 17 2: ctrl1
menu mnuSaveAs: [song1.mlp already exists. Do you want to replace it ?] save(song1 Marlune pattren (*.mlp)|*.mlp
    mlp) save(song1 Marlune pattren (*.mlp)|*.mlp mlp) title "Marlune 200Q [ song2.mlp ]" | ctrl0
named 1; ok:
menu mnuSaveAs: [song1.mlp already exists. Do you want to replace it ?] save(song2 Marlune pattren (*.mlp)|*.mlp
    mlp) title "Marlune 200Q [ song1.mlp ]"
- drag knobTempo 0 100
menu mnuFileOpenPatt: [Save changes to song1.mlp before closing ? ]
no:
menu mnuFileOpenPatt: [Save changes to song1.mlp before closing ? ] open(song1 Marlune pattren (*.mlp)|*.mlp mlp)
named 2; no; down 17 2: ctrl1
menu mnuFileOpenPatt: patterns(0 A1>A1@0 A1>A1@0 A1>A1@0) Set103StoredChan32(0,0) (1,1) pattern(103A A1)
    pattern(103B A1) pattern(109 A1) pattern(109 D8) SetSong32(0) patterns(0 A1>A1@0 A1>A1@0 A1>A1@0) position(0)
    SetController32(0..11,0) SetController32(12..19,100) | knobTempo=26 tempoBPM="140" | [Save changes to
    song1.mlp before closing ? ] open(song1 Marlune pattren (*.mlp)|*.mlp mlp) title "Marlune 200Q [ song2.mlp ]"
    | ctrl0 undo4 changed0 tempo=140
menu mnuEditUndo: knobTempo=33 tempoBPM="166" | title "Marlune 200Q [ song1.mlp ]" | undo3 changed1 tempo=166
- click ediSel 1; click bank103B 2; key 52; click sel109 3; song; key 33
- click RecButton 0; drag knobSprite 2 100
yes:
menu mnuFileOpenPatt: [Save changes to song1.mlp before closing ? ] open(song1 Marlune pattren (*.mlp)|*.mlp mlp)
    | changed0
- click step109LED 0; key 221
yes; named 1:
menu mnuFileOpenPatt: pattern(103A A4) pattern(103B C1) pattern(109 A1) SetSong32(0) patterns(16 A4>A4@0 C1>C1@0
    A1>A1@0) SetController32(0..11,0) SetController32(12..19,100) patterns(16 A4>A4@0 C1>C1@0 A1>A1@0)
    Set103StoredChan32(0,0) (1,1) pattern(103A A1) pattern(103B A1) pattern(109 A1) pattern(109 D8) SetSong32(0)
    patterns(16 A4>A4@0 C1>C1@0 A1>A1@0) position(0) SetSong32(-1) song(0 A1>A1@0 A1>A1@0 A1>A1@0)
    PrepareController32(0..11,0) PrepareController32(12..19,100) pattern(103A A1) pattern(103B A1) pattern(109
    A1) PrepareController32(0..11,0) PrepareController32(12..19,100) | timeDisplay disabled microDisplay disabled
    DigitPatt(0)=3 accent(0)=0 DigitPatt(1)=3 DigitPatt(2)=16 accent(1)=0 DigitPatt(3)=16 knobSprite(2)=0
    Check1=0 ResetButton=0 prevButton=0 nextButton=0 RwdStep=0 FwdStep=0 stopButton=0 playSongButton=0
    RecButton=0 timeDisplay="1" timeDisplay enabled microDisplay enabled knobSprite(0..18) disabled
    DigitPatt(0)=0 accent(0)=1 DigitPatt(1)=0 DigitPatt(2)=0 accent(1)=1 DigitPatt(3)=0 Check1=1 ResetButton=1
    prevButton=1 nextButton=1 RwdStep=1 FwdStep=1 stopButton=1 playSongButton=1 RecButton=1 | [Save changes to
    song1.mlp before closing ? ] open(song1 Marlune pattren (*.mlp)|*.mlp mlp) | tick0 rec0 undo0 changed0 knobs
    2=0
- song
named 2:
menu mnuFileOpenPatt: [Save changes to song1.mlp before closing ? ]
named 3:
menu mnuFileOpenPatt: [Save changes to song1.mlp before closing ? ]
- click accent 0
menu mnuFileExit:
)");
}

TEST_F(FileSession, Export) {
    std::string meter;
    program.shell.modeless = [&](Form& form) {
        meter += form.caption + " " + std::to_string(exportMeter.ProgressBar1.minimum) + ".." +
                 std::to_string(exportMeter.ProgressBar1.maximum) + "\n";
    };
    expectSession(session, R"(
- song; key 33; key 33
dialog b1:
menu mnuFileExport: Export to MIDI File: {Export Details Number of Bars :[16]6 '[ Starting at Bar:3 ]' } ( !Save
    xCancel )
dialog 0=x b0:
menu mnuFileExport: Export to MIDI File: {Export Details Number of Bars :[16]6 '[ Starting at Bar:3 ]' } ( !Save
    xCancel ) [Enter the number of Bars to export (1 to 1000)]
dialog 0=3 b0:
menu mnuFileExport: Export to MIDI File: {Export Details Number of Bars :[16]6 '[ Starting at Bar:3 ]' } ( !Save
    xCancel ) save( MIDI File (*.mid)|*.mid mid)
midi-named 1:
dialog 0=3 b0:
menu mnuFileExport: Export to MIDI File: {Export Details Number of Bars :[3]6 '[ Starting at Bar:3 ]' } ( !Save
    xCancel ) save( MIDI File (*.mid)|*.mid mid)
midi-named 1; midi-named 2:
dialog 0=2 b0:
click playSongButton 0: PrepareController32(0..11,0) PrepareController32(12..19,100) HoldTicks32(-1)
    SetMarluneTempo32(140) song(32 A1>A1@0 A1>A1@0 A1>A1@0) StartMarluneTimer32(17,0) next(A1 A1 A1)
    HoldTicks32(0) | startStopButton=1 playSongButton=2 | run1
menu mnuFileExport: StopMarluneTimer32() SendShortMessage32(144,0,0) (145,0,0) drums off(153) song(32 A1>A1@0
    A1>A1@0 A1>A1@0) | startStopButton=0 playSongButton=1 | Export to MIDI File: {Export Details Number of Bars
    :[3]6 '[ Starting at Bar:3 ]' } ( !Save xCancel ) [song1.mid already exists. Do you want to replace it ?]
    save(song1 MIDI File (*.mid)|*.mid mid) save(song1 MIDI File (*.mid)|*.mid mid) | run0
midi-named 1; ok:
dialog b0:
menu mnuFileExport: Export to MIDI File: {Export Details Number of Bars :[2]6 '[ Starting at Bar:3 ]' } ( !Save
    xCancel ) [song1.mid already exists. Do you want to replace it ?] save(song2 MIDI File (*.mid)|*.mid mid)
dialog b1:
menu mnuFileExport: Export to MIDI File: {Export Details Number of Bars :[2]6 '[ Starting at Bar:3 ]' } ( !Save
    xCancel )
)");
    EXPECT_EQ(meter,
              "Exporting to MIDI File 0..100\nExporting to MIDI File 2..7\nExporting to MIDI File 2..6\n");
    EXPECT_EQ(readBytes("song1.mid"), readBytes("song2.mid"));
    EXPECT_FALSE(exportMeter.visible());
}

} // namespace
} // namespace marlune
