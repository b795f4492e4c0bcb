#include "widgets/theme.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    orvel::applyTheme(application, orvel::ThemeVariant::Dark);
    return RUN_ALL_TESTS();
}
