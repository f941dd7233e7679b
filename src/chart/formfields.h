#pragma once

#include <QString>

/// The ids of the form's fields that are known outside of its page. A note lists those that
/// follow its text among its siblings.
namespace FormFields
{

constexpr char Loss[] = "loss";
constexpr char LossOfControl[] = "lossOfControl";
constexpr char TitleImage[] = "titleImageFile";
constexpr char LastStep[] = "lastStepShown";

/// The fields of a causal factor's row, NUM standing for its number.
constexpr char CausalFactorGuid[] = "causalFactor_guid_NUM";
constexpr char CausalFactorText[] = "causalFactor_text_NUM";
constexpr const char *CausalFactorRow[] = {
    CausalFactorGuid,
    CausalFactorText,
    "causalFactor_description_NUM",
    "causalFactor_worthFixing-Yes_NUM",
    "causalFactor_worthFixing-No_NUM",
    "causalFactor_correctiveAction_NUM",
    "causalFactor_responsible_NUM",
    "causalFactor_dueDate_NUM",
};

inline QString getRowField(const char *pattern, int number)
{
    return QString(pattern).replace("NUM", QString::number(number));
}

inline bool isOfCausalFactor(const QString &id)
{
    return id.startsWith("causalFactor");
}

} // namespace FormFields
