#pragma once

#include <QTest>

/// Names the row of a table while it is checked: a check that fails inside is told with it.
class Row
{
public:
    explicit Row(const char *name) : name(name), hadFailed(QTest::currentTestFailed()) {}
    ~Row()
    {
        if (!hadFailed && QTest::currentTestFailed())
            qWarning("   in the row: %s", name);
    }

private:
    Q_DISABLE_COPY(Row)

    const char *name;
    bool hadFailed;
};
