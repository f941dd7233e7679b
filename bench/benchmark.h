#pragma once

#include <QElapsedTimer>
#include <QString>

#include <functional>
#include <vector>

/// The numbers of notes that every benchmark runs at; each brings as many connectors.
constexpr int BenchSizes[] = {1000, 5000, 20000};

/// Milliseconds.
struct Times {
    double ours;
    double floor;
};

/// How long the function runs, in ms.
inline double timed(const std::function<void()> &function)
{
    QElapsedTimer timer;
    timer.start();
    function();
    return timer.nsecsElapsed() / 1e6;
}

/// The medians of `runs` runs, ours and the floor taking turns. Each of the two
/// measures itself, with timed(), so that what it prepares does not count.
Times measure(int runs, const std::function<double()> &ours, const std::function<double()> &floor);

/// Prints a row per size as it is added, and at its end how both grow: the slope
/// between first and last size on logarithmic axes, where 1 is linear.
class BenchTable
{
public:
    explicit BenchTable(const QString &name);
    ~BenchTable();

    void add(int size, const Times &times);

private:
    struct Row {
        int size;
        Times times;
    };
    std::vector<Row> rows;
};

// One function per benchmark, in a file of its own.
void benchOpen();
void benchSave();
void benchRoute();
void benchDrag();
void benchRender();
void benchPdf();
void benchPaste();
void benchFind();
