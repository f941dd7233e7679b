#pragma once

#include <QPair>

class ProjectScene;
class Sticky;

/// Fills the new sheet of a causal factor with twins of the factor and, where the main sheet has
/// both, of the Loss (the first of the pair) and the Loss Of Control, and joins them by connectors.
void seedFactorSheet(ProjectScene *sheet, Sticky *factor, const QPair<Sticky *, Sticky *> &ends);

/// The box that tells what the sheet is for.
void addInfoBox(ProjectScene *sheet);
