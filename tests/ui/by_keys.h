#pragma once

#include <QComboBox>
#include <QTest>

#include <gtest/gtest.h>

namespace dravik::test {

/// The entry, as it is chosen with keys.
inline void chooseByKeys(QComboBox& combo, const QString& entry) {
    const int place = combo.findText(entry);
    ASSERT_GE(place, 0) << entry.toStdString();
    combo.setFocus();
    for (int key = 0; key < combo.count() && combo.currentIndex() != place; ++key)
        QTest::keyClick(&combo, combo.currentIndex() < place ? Qt::Key_Down : Qt::Key_Up);
    EXPECT_EQ(combo.currentText(), entry);
}

}  // namespace dravik::test
