#include <functional>

#include "Contrast.h"
#include "FieldFixture.h"

namespace tarvik {
namespace {

using test::Contrast;
using test::Field;
using test::Readable;

QPalette DarkPalette() {
  QPalette dark(QColor(0x30, 0x30, 0x30));
  dark.setColor(QPalette::Base, QColor(0x20, 0x20, 0x20));
  return dark;
}

struct FieldLook : Field {
  void TearDown() override { SetColours(QPalette()); }

  /// The toolkit takes them at its next turn.
  static void SetColours(const QPalette &palette) {
    QApplication::setPalette(palette);
    QApplication::processEvents();
  }

  void MakeBurstLength() {
    Make({{"DefaultValue", 128.0}, {"Max", 65536.0}, {"Min", 2.0}, {"NumberFormat", std::string("#")}});
    field->SetFocus();
    QTest::keyClick(txt, Qt::Key_Right);
    ASSERT_EQ(Selected(), "2");
  }
  QImage Picture() { return txt->grab().toImage(); }
  void Save(const char *strName) {
    const QString folder = qEnvironmentVariable("TARVIK_PICTURES");
    if (!folder.isEmpty()) {
      EXPECT_TRUE(form.grab().save(folder + '/' + strName + ".png"));
    }
  }
};

TEST_F(FieldLook, ADisabledFieldPaintsNoSelection) {
  MakeBurstLength();
  field->SetEnabled(False);
  const QImage selected = Picture();
  txt->deselect();
  EXPECT_EQ(Picture(), selected);
}

TEST_F(FieldLook, ALockedFieldPaintsNoSelectionEvenWithTheFocus) {
  MakeBurstLength();
  field->LockControl(True, False);
  ASSERT_TRUE(txt->hasFocus());
  ASSERT_EQ(txt->selectionLength(), 1);
  const QImage selected = Picture();
  txt->deselect();
  EXPECT_EQ(Picture(), selected);
}

TEST_F(FieldLook, ALockedFieldKeepsTheColoursOfAnEnabledOne) {
  MakeBurstLength();
  form.setFocus();
  const QImage enabled = Picture();
  field->LockControl(True, False);
  EXPECT_EQ(Picture(), enabled);
}

TEST_F(FieldLook, TheTextOfADisabledFieldIsReadableOnItsGreyInLightAndDark) {
  MakeBurstLength();
  field->SetEnabled(False);
  const std::pair<QPalette, QColor> Backs[] = {{QPalette(), QColor(0xC0, 0xC0, 0xC0)},
                                               {DarkPalette(), QColor(0x20, 0x20, 0x20)}};
  for (const auto &[palette, grey] : Backs) {
    SetColours(palette);
    const QColor back = txt->palette().color(QPalette::Disabled, QPalette::Base);
    EXPECT_EQ(back, grey);
    for (const auto role : {QPalette::Text, QPalette::HighlightedText})
      EXPECT_GE(Contrast(txt->palette().color(QPalette::Disabled, role), back), Readable);
    EXPECT_EQ(txt->palette().color(QPalette::Disabled, QPalette::Highlight), back);
  }
}

TEST_F(FieldLook, AFieldFollowsAPaletteThatItsHostChangesLater) {
  MakeBurstLength();
  for (const bool fApplication : {false, true}) {
    if (fApplication) {
      form.setPalette(QPalette());
      SetColours(DarkPalette());
    } else {
      form.setPalette(DarkPalette());
    }
    EXPECT_EQ(txt->palette().color(QPalette::Base), QColor(0x20, 0x20, 0x20));
    EXPECT_GE(Contrast(txt->palette().color(QPalette::Text), txt->palette().color(QPalette::Base)), Readable);
  }
}

TEST_F(FieldLook, AFieldInADisabledBoxLooksAsADisabledOne) {
  MakeBurstLength();
  field->SetEnabled(False);
  const QImage disabled = Picture();
  field->SetEnabled(True);
  form.setEnabled(false);
  EXPECT_EQ(Picture(), disabled);
  form.setEnabled(true);
  EXPECT_NE(Picture(), disabled);
}

TEST_F(FieldLook, TheArrowsOfTheSpinButtonHaveTheColourOfButtonTextsToTheirEdges) {
  MakeVolts(2);
  QPalette colours;
  colours.setColor(QPalette::ButtonText, Qt::red);
  SetColours(colours);
  const QImage image = spin->grab().toImage();
  int intRed = 0, intBlack = 0;
  for (int x = 0; x < image.width(); ++x) {
    for (int y = 0; y < image.height(); ++y) {
      const QColor colour = image.pixelColor(x, y);
      intRed += colour.red() > 200 && colour.green() < 100;
      intBlack += colour.lightness() < 60;
    }
  }
  EXPECT_GT(intRed, 10);
  EXPECT_EQ(intBlack, 0);
}

TEST_F(FieldLook, AllStatesCanBePictured) {
  for (const bool fDark : {false, true}) {
    SetColours(fDark ? DarkPalette() : QPalette());
    QWidget *states = new QWidget(&form);
    states->setGeometry(0, 0, 600, 200);
    const std::function<void(EngrSpin &)> prepare[] = {
        [](EngrSpin &) {},
        [](EngrSpin &f) { f.SetEnabled(False); },
        [](EngrSpin &f) { f.LockControl(True, False); },
        [](EngrSpin &f) { f.LockControl(True, True); },
        [](EngrSpin &f) { f.SetFocus(); },
    };
    Single sngTop = 150;
    EngrSpin *last = nullptr;
    form.show();
    form.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    for (const auto &state : prepare) {
      last = new EngrSpin(states);
      last->ReadProperties({{"Caption", std::string("Burst Length")},
                            {"CaptionWidth", Single{1100}},
                            {"DefaultValue", 128.0},
                            {"NumberFormat", std::string("#")}});
      last->Move(300, sngTop, 3630, 315);
      sngTop += 450;
      states->show();
      last->show();
      last->SetFocus();
      auto *text = last->findChild<QLineEdit *>("txtNumber");
      QTest::keyClick(text, Qt::Key_Right);
      state(*last);
    }
    auto *text = last->findChild<QLineEdit *>("txtNumber");
    EXPECT_EQ(text->selectedText(), "2");
    QApplication::processEvents();
    Save(fDark ? "field-dark-rest" : "field-light-rest");
    QTest::keyClicks(text, "77");
    Save(fDark ? "field-dark-typing" : "field-light-typing");
    delete states;
  }
}

}  // namespace
}  // namespace tarvik
