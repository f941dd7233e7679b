#include "form/formbridge.h"

#include <QTimer>

#include <exception>

FormBridge::FormBridge(FormBridgeTarget *target, QObject *parent) : QObject(parent), target(target)
{
}

QString FormBridge::getSharedString() const
{
    return target->getSharedString();
}

void FormBridge::setSharedString(const QString &text)
{
    target->setSharedString(text);
}

void FormBridge::onFieldChanged(const QString &id)
{
    guard([this, id] { target->onFieldChanged(id); });
}

void FormBridge::addOnChangeHandlers()
{
    guard([this] { target->addOnChangeHandlers(); });
}

void FormBridge::onPrintRequested()
{
    guard([this] { target->onPrintRequested(); });
}

void FormBridge::removeCausalFactor(int cfNumber)
{
    guard([this, cfNumber] { target->removeCausalFactor(cfNumber); });
}

void FormBridge::onExportFormClicked()
{
    guard([this] { target->onExportFormClicked(); });
}

void FormBridge::onChooseImageClicked()
{
    guard([this] { target->onChooseImageClicked(); });
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
