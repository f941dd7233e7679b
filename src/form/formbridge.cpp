#include "form/formbridge.h"

#include "form/formview.h"

#include <QTimer>

#include <exception>

FormBridge::FormBridge(FormView *view) : QObject(view), view(view) {}

QString FormBridge::getSharedString() const
{
    return view->getSharedString();
}

void FormBridge::setSharedString(const QString &text)
{
    view->setSharedString(text);
}

void FormBridge::onFieldChanged(const QString &id)
{
    guard([this, id] { view->onFieldChanged(id); });
}

void FormBridge::addOnChangeHandlers()
{
    guard([this] { view->addOnChangeHandlers(); });
}

void FormBridge::onPrintRequested()
{
    guard([this] { view->onPrintRequested(); });
}

void FormBridge::removeCausalFactor(int cfNumber)
{
    guard([this, cfNumber] { view->removeCausalFactor(cfNumber); });
}

void FormBridge::onExportFormClicked()
{
    guard([this] { view->onExportFormClicked(); });
}

void FormBridge::onChooseImageClicked()
{
    guard([this] { view->onChooseImageClicked(); });
}

void FormBridge::guard(const std::function<void()> &action)
{
    try {
        action();
    } catch (...) {
        QTimer::singleShot(0, this,
                           [error = std::current_exception()] { std::rethrow_exception(error); });
    }
}
