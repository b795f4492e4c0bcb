// Which work folder: what can be chosen, what is refused, and what is made.
#include "platform/fake/fake_database.h"
#include "station/homes.h"
#include "tests/platform/audio/temp_folder.h"
#include "tests/test_platform.h"
#include "windows/frm_homes.h"

#include <QDir>
#include <QTest>

#include <gtest/gtest.h>

namespace orvel {

namespace {

class ChoosingAHome : public testing::Test, protected TestPlatform<FakeDatabaseEngine> {
  protected:
    QString makeHome(const char *name) {
        const QString home = homes.make(QString::fromLatin1(name));
        homes.use(home);
        return home;
    }
    void show(const QString &current = {}) {
        window = std::make_unique<frmHomes>(homes, prompts, current);
        window->show();
    }
    void click(QPushButton *button) { QTest::mouseClick(button, Qt::LeftButton); }
    [[nodiscard]] QString cell(int row, int column) const { return window->lstHomes->item(row, column)->text(); }

    test::TempFolder folder;
    HomePlaces places{folder.path(QStringLiteral("config/werkmappen.ini")), folder.path(QStringLiteral("ORVEL")),
                      QStringLiteral(ORVEL_SOURCE_DIR "/samples/station")};
    Homes homes{files, places};
    std::unique_ptr<frmHomes> window;
};

} // namespace

TEST_F(ChoosingAHome, AtTheFirstStartThereIsNothingToOpen) {
    show();
    EXPECT_FALSE(window->lstHomes->isVisible());
    EXPECT_FALSE(window->cmdOpen->isVisible());
    EXPECT_FALSE(window->lblNotice->isVisible());
    EXPECT_TRUE(window->cmdSample->isVisible());
    click(window->cmdExit);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(window->home(), QString());
}

TEST_F(ChoosingAHome, ANewOneHasTheNameThatIsTyped) {
    show();
    prompts.expectInput(QStringLiteral("Hoe heet de nieuwe werkmap? De naam van de zender, bijvoorbeeld."),
                        QStringLiteral("Nieuwe werkmap"), QStringLiteral(" "));
    click(window->cmdNew);
    EXPECT_TRUE(window->isVisible()) << "no name, no folder";
    EXPECT_FALSE(QDir(places.folder).exists());
    prompts.expectInput(QStringLiteral("Hoe heet de nieuwe werkmap? De naam van de zender, bijvoorbeeld."),
                        QStringLiteral("Nieuwe werkmap"), QStringLiteral("Radio Een"));
    click(window->cmdNew);
    EXPECT_EQ(window->home(), places.folder + QStringLiteral("/Radio Een"));
    EXPECT_EQ(window->result(), QDialog::Accepted);
    EXPECT_TRUE(homes.isThere(window->home()));
}

TEST_F(ChoosingAHome, TheSamplesMakeOneOfTheirOwn) {
    show();
    click(window->cmdSample);
    EXPECT_EQ(window->result(), QDialog::Accepted);
    EXPECT_EQ(QDir(window->home() + QStringLiteral("/new")).entryList(QDir::Files).size(), 3);
}

TEST_F(ChoosingAHome, WithoutSamplesNoneAreOffered) {
    Homes bare(files, {places.list, places.folder, {}});
    const frmHomes other(bare, prompts, {});
    EXPECT_TRUE(other.cmdSample->isHidden());
}

TEST_F(ChoosingAHome, AFolderOfOnesOwnIsTakenAndAnotherAskedFor) {
    const QString home = folder.path(QStringLiteral("server"));
    homes.prepare(home);
    show();
    prompts.expectFolder(QStringLiteral("Kies een werkmap"), QDir::homePath(), QString());
    click(window->cmdExisting);
    EXPECT_TRUE(window->isVisible());
    const QString plain = folder.path(QStringLiteral("foto's"));
    QDir().mkpath(plain);
    prompts.expectFolder(QStringLiteral("Kies een werkmap"), QDir::homePath(), plain);
    prompts.expectAsk(
        QStringLiteral("In de map %1 heeft ORVEL nog niet gewerkt.\n\nEr een werkmap van maken?").arg(plain),
        QStringLiteral("Werkmap kiezen"), false, Preset::Yes,
        {QStringLiteral("&Maak een werkmap"), QStringLiteral("&Annuleer")});
    click(window->cmdExisting);
    EXPECT_TRUE(window->isVisible());
    prompts.expectFolder(QStringLiteral("Kies een werkmap"), QDir::homePath(), home);
    click(window->cmdExisting);
    EXPECT_EQ(window->home(), home);
}

TEST_F(ChoosingAHome, OneThatIsGoneIsToldUntilItIsThereAgain) {
    const QString other = makeHome("Vast");
    const QString stick = makeHome("Stick");
    const QString away = stick + QStringLiteral(" weg");
    ASSERT_TRUE(QDir().rename(stick, away));
    show();
    EXPECT_TRUE(window->lblNotice->isVisible());
    EXPECT_TRUE(window->lblNotice->text().contains(stick)) << window->lblNotice->text().toStdString();
    EXPECT_EQ(cell(0, 0), QStringLiteral("Stick"));
    EXPECT_EQ(cell(0, 2), QStringLiteral("niet gevonden"));
    EXPECT_EQ(cell(1, 2), QString());
    prompts.expectMessage(QStringLiteral("De werkmap %1 werd niet gevonden.").arg(stick), errorTitle,
                          MessageIcon::Exclamation);
    click(window->cmdOpen);
    EXPECT_TRUE(window->isVisible());
    ASSERT_TRUE(QDir().rename(away, stick));
    click(window->cmdOpen);
    EXPECT_EQ(window->home(), stick);
}

TEST_F(ChoosingAHome, TheOneInUseIsNeitherOpenedNorForgotten) {
    const QString other = makeHome("Ander");
    const QString current = makeHome("Huidig");
    show(current);
    EXPECT_FALSE(window->lblNotice->isVisible());
    EXPECT_EQ(cell(0, 2), QStringLiteral("in gebruik"));
    EXPECT_FALSE(window->cmdOpen->isEnabled());
    EXPECT_FALSE(window->cmdForget->isEnabled());
    Q_EMIT window->lstHomes->itemActivated(window->lstHomes->item(0, 0)); // Enter, or a double click
    EXPECT_TRUE(window->isVisible());
    prompts.expectFolder(QStringLiteral("Kies een werkmap"), QDir::homePath(), current);
    click(window->cmdExisting);
    EXPECT_TRUE(window->isVisible());
    window->lstHomes->selectRow(1);
    Q_EMIT window->lstHomes->itemActivated(window->lstHomes->item(1, 0));
    EXPECT_EQ(window->home(), other);
}

TEST_F(ChoosingAHome, OneThatIsForgottenLeavesTheListAndStaysOnTheDisk) {
    const QString home = makeHome("Oud");
    show();
    click(window->cmdForget);
    EXPECT_TRUE(homes.all().isEmpty());
    EXPECT_TRUE(homes.isThere(home));
    EXPECT_FALSE(window->lstHomes->isVisible());
    EXPECT_TRUE(window->isVisible());
}

} // namespace orvel
