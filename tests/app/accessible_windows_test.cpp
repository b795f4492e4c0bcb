// What a screen reader is told of every window: each control has a name, a sensible role, a state and a value.
#include "every_window.h"
#include "station/homes.h"
#include "windows/frm_delay.h"
#include "windows/frm_homes.h"

#include <QAccessible>

namespace orvel {

namespace {

/// What is operated or read, and so must be called something.
bool isControl(QAccessible::Role role) {
    static const QSet<int> roles{QAccessible::Button,       QAccessible::CheckBox,    QAccessible::RadioButton,
                                 QAccessible::ComboBox,     QAccessible::Slider,      QAccessible::SpinBox,
                                 QAccessible::Dial,         QAccessible::List,        QAccessible::Table,
                                 QAccessible::EditableText, QAccessible::ProgressBar, QAccessible::Indicator,
                                 QAccessible::PageTab,      QAccessible::PageTabList, QAccessible::ButtonMenu,
                                 QAccessible::Dialog,       QAccessible::Window,      QAccessible::ToolBar};
    return roles.contains(role);
}

bool hasNumber(QAccessible::Role role) {
    static const QSet<int> roles{QAccessible::Slider, QAccessible::SpinBox, QAccessible::Dial,
                                 QAccessible::ProgressBar};
    return roles.contains(role);
}

QString named(QAccessibleInterface &node) {
    const QObject *object = node.object();
    const QString kind = object ? QString::fromLatin1(object->metaObject()->className()) : QString();
    return QStringLiteral("%1 %2 \"%3\" role %4")
        .arg(kind, object ? object->objectName() : QString(), node.text(QAccessible::Name))
        .arg(static_cast<int>(node.role()));
}

/// Notes what is wrong with a control, in one line each.
class Walk {
  public:
    QStringList problems;
    int controls = 0;

    void through(QAccessibleInterface *node) {
        if (node == nullptr || !node->isValid()) {
            return;
        }
        look(*node);
        // The cells are looked at by themselves; a list of them may be long.
        const bool isView = node->role() == QAccessible::Table || node->role() == QAccessible::List;
        for (int child = 0; !isView && child < node->childCount(); ++child) {
            through(node->child(child));
        }
    }

  private:
    void look(QAccessibleInterface &node) {
        const auto *widget = qobject_cast<QWidget *>(node.object());
        // The arrows of Qt's own scroll bars and tab bars are no work of a window.
        if (widget != nullptr && (widget->objectName().startsWith(QStringLiteral("qt_")) ||
                                  widget->objectName().startsWith(QStringLiteral("Scroll")))) {
            return;
        }
        const bool takesKeys = widget != nullptr && (widget->focusPolicy() & Qt::TabFocus) != 0 &&
                               widget->focusProxy() == nullptr && !widget->isWindow();
        if (!isControl(node.role()) && !takesKeys) {
            return;
        }
        ++controls;
        const QString name = node.text(QAccessible::Name);
        if (name.trimmed().isEmpty()) {
            problems << named(node) + QStringLiteral(" has no name");
        }
        if (takesKeys && (node.role() == QAccessible::NoRole || node.role() == QAccessible::Client ||
                          node.role() == QAccessible::Pane)) {
            problems << named(node) + QStringLiteral(" takes keys, and its role does not tell what it is");
        }
        if (widget != nullptr && node.state().disabled == widget->isEnabled()) {
            problems << named(node) + QStringLiteral(" is enabled, or not, and says otherwise");
        }
        if (node.role() == QAccessible::ComboBox && !name.isEmpty() && name == node.text(QAccessible::Value)) {
            problems << named(node) + QStringLiteral(" is called by its value");
        }
        if (hasNumber(node.role())) {
            lookAtNumber(node);
        }
    }

    void lookAtNumber(QAccessibleInterface &node) {
        QAccessibleValueInterface *value = node.valueInterface();
        if (value == nullptr) {
            problems << named(node) + QStringLiteral(" has no value");
            return;
        }
        const double now = value->currentValue().toDouble();
        if (now < value->minimumValue().toDouble() || now > value->maximumValue().toDouble()) {
            problems << named(node) + QStringLiteral(" has a value outside its limits");
        }
    }
};

class WhatIsRead : public EveryWindow {
  protected:
    void expectSound(QWidget &shown, int leastControls) {
        SCOPED_TRACE(shown.objectName().toStdString());
        Walk walk;
        walk.through(QAccessible::queryAccessibleInterface(&shown));
        EXPECT_TRUE(walk.problems.isEmpty()) << walk.problems.join(u'\n').toStdString();
        EXPECT_GE(walk.controls, leastControls) << "the walk ended early";
    }
    template <class Window>
    void expectSoundWindow(int leastControls) {
        auto *shown = shownWindow<Window>();
        ASSERT_NE(shown, nullptr);
        expectSound(*shown, leastControls);
        shown->close();
    }
};

} // namespace

TEST_F(WhatIsRead, TheMainWindowTellsWhatItsControlsAre) {
    openDemo();
    expectSound(*window, 30);
}

TEST_F(WhatIsRead, TheSetupTellsWhatItsControlsAre) {
    openDemo();
    window->tlbMain_ButtonClick(4);
    expectSoundWindow<frmSetup>(20);
}

TEST_F(WhatIsRead, ImportAndExportTellWhatTheirControlsAre) {
    openDemo();
    window->tlbMain_ButtonClick(2);
    expectSoundWindow<frmImport>(6);
    window->tlbMain_ButtonClick(3);
    expectSoundWindow<frmExport>(5);
}

TEST_F(WhatIsRead, TheDialogsOfAStepTellWhatTheirControlsAre) {
    openDemo();
    click(window->panels().savePanel->cmdImport);
    expectSoundWindow<frmConvert>(9);
    Q_EMIT window->panels().gridPanel->previewWanted();
    expectSoundWindow<frmPreview>(7);
    Q_EMIT window->panels().filePanel->recoverWanted();
    expectSoundWindow<frmRecover>(4);
    Q_EMIT window->panels().cardPanel->advancedWanted();
    expectSoundWindow<frmAdv>(3);
    Q_EMIT window->panels().cardPanel->delayWanted();
    expectSoundWindow<frmDelay>(3);
    key(Qt::Key_F1);
    expectSoundWindow<frmKeys>(2);
}

TEST_F(WhatIsRead, TheStationChooserTellsWhatItsControlsAre) {
    openDemo();
    click(window->panels().savePanel->cmdMultivoice);
    record(300);
    click(window->panels().savePanel->cmdSave);
    expectSoundWindow<frmStation>(4);
}

TEST_F(WhatIsRead, WhatTheLastRunLeftTellsWhatItsControlsAre) {
    openDemo();
    record(500);
    window.reset();
    ASSERT_TRUE(start());
    expectSoundWindow<frmUnfiled>(4);
}

TEST_F(WhatIsRead, TheChoiceOfAWorkFolderTellsWhatItsControlsAre) {
    openDemo();
    Homes homes(disk, {path(QStringLiteral("werkmappen.ini")), path(QStringLiteral("ORVEL")),
                       QStringLiteral(ORVEL_SOURCE_DIR "/samples/station")});
    homes.use(folder.path());
    frmHomes chooser(homes, prompts, {}, window.get());
    chooser.show();
    expectSoundWindow<frmHomes>(7);
}

/// The ones that were found without a value, or with the wrong one.
TEST_F(WhatIsRead, TimesAndVolumesAreReadAsTheyAreSeen) {
    openDemo();
    const auto seen = [](QWidget *widget) { return QAccessible::queryAccessibleInterface(widget); };
    RecorderPanel &recorder = *window->panels().recorderPanel;
    beginRecording();
    sound.deliver(44100 * 2);
    timers.advance(2000);
    EXPECT_EQ(seen(recorder.ledTijd)->text(QAccessible::Name), QStringLiteral("Opnametijd"));
    EXPECT_NEAR(seen(recorder.ledTijd)->valueInterface()->currentValue().toDouble(), 2.0, 0.02);
    EXPECT_EQ(seen(recorder.ledCount)->text(QAccessible::Name), QStringLiteral("Aftelling"));
    ASSERT_NE(seen(recorder.ledCount)->valueInterface(), nullptr);
    click(recorder.cmdRec);
    auto *volume = window->findChild<QSlider *>(QStringLiteral("slVolume1"));
    ASSERT_NE(volume, nullptr);
    EXPECT_EQ(seen(volume)->text(QAccessible::Name), QStringLiteral("Volume van ingang 1"));
    EXPECT_EQ(seen(volume)->text(QAccessible::Value),
              QStringLiteral("%1 %").arg(qRound(sound.audioRecord().lineVolume() / 655.35)));
    EXPECT_EQ(seen(window->panels().cardPanel->cobKaart)->text(QAccessible::Name), QStringLiteral("Opnamekaart"));
}

} // namespace orvel
