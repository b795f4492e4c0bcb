#include "windows/frm_splash.h"

#include "widgets/theme.h"
#include "windows/version.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QSvgWidget>
#include <QVBoxLayout>

namespace orvel {

namespace {

QSvgWidget *logo(QWidget *parent) {
    auto *picture = new QSvgWidget(QStringLiteral(":/logo.svg"), parent);
    const int side = parent->fontMetrics().height() * 11;
    picture->setFixedSize(side, side);
    return picture;
}

} // namespace

frmSplash::frmSplash(QWidget *parent)
    : QWidget(parent, Qt::SplashScreen), Label1(new QLabel(QStringLiteral("ORVEL"), this)),
      lblVersion(new QLabel(QStringLiteral("Versie"), this)), lblWarning(new QLabel(this)), imgLogo(logo(this)) {
    setObjectName(QStringLiteral("frmSplash"));
    setWindowTitle(QStringLiteral("ORVEL"));
    setAccessibleName(tr("Informatie over ORVEL"));
    Label1->setObjectName(QStringLiteral("Label1"));
    QFont title(QStringLiteral("Arial Black"));
    title.setStyleHint(QFont::SansSerif);
    title.setWeight(QFont::Black);
    title.setPointSizeF(font().pointSizeF() * 3.5);
    Label1->setFont(title);
    lblVersion->setObjectName(QStringLiteral("lblVersion"));
    lblWarning->setObjectName(QStringLiteral("lblWarning"));
    lblWarning->setText(tr("Voicetracks opnemen voor de radio.\nVrije software onder de MIT-licentie."));
    lblWarning->setAlignment(Qt::AlignCenter);
    imgLogo->setObjectName(QStringLiteral("imgLogo"));
    imgLogo->setAccessibleName(tr("Logo; klik om te sluiten"));
    imgLogo->setCursor(Qt::PointingHandCursor);
    imgLogo->installEventFilter(this);
    setFocusPolicy(Qt::StrongFocus);
    auto *layout = new QVBoxLayout(this);
    const int margin = fontMetrics().height() * 3;
    layout->setContentsMargins(margin, margin, margin, margin);
    for (QWidget *part : {imgLogo, static_cast<QWidget *>(Label1), static_cast<QWidget *>(lblVersion),
                          static_cast<QWidget *>(lblWarning)}) {
        layout->addWidget(part, 0, Qt::AlignCenter);
    }
}

void frmSplash::Form_Load() {
    lblVersion->setText(QStringLiteral("%1.%2.%3").arg(versionMajor).arg(versionMinor).arg(versionRevision));
    adjustSize();
    const QScreen *screen = parentWidget() ? parentWidget()->screen() : QGuiApplication::primaryScreen();
    if (screen) {
        move(screen->availableGeometry().center() - rect().center());
    }
}

void frmSplash::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    Form_Load();
    activateWindow();
    setFocus();
}

void frmSplash::keyPressEvent(QKeyEvent * /*event*/) {
    Form_KeyPress();
}

bool frmSplash::eventFilter(QObject *watched, QEvent *event) {
    if (watched == imgLogo && event->type() == QEvent::MouseButtonRelease) {
        imgLogo_Click();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void frmSplash::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), themeColour(ThemeRole::Panel));
    painter.setPen(themeColour(ThemeRole::Border));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void frmSplash::Form_KeyPress() {
    close();
}

void frmSplash::imgLogo_Click() {
    close();
}

} // namespace orvel
