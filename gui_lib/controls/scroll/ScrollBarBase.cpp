#include "gui_lib/controls/scroll/ScrollBarBase.h"

#include <algorithm>
#include <cmath>

namespace gui {

// --- Value ---

void ScrollBarBase::setValue(double newValue) {
    double const valid = validateValue_(newValue);
    if (differs_(valid, value))
        onValueChanged_(valid);
}

void ScrollBarBase::changeValue_(double newValue) { ScrollBarBase::setValue(newValue); }

double ScrollBarBase::getValue() const { return value; }

void ScrollBarBase::onValueChanged_(double newValue) { value = newValue; }

double ScrollBarBase::validateValue_(double wanted) const {
    if (rangeMinimum >= wanted)
        return rangeMinimum;
    double const top = rangeMaximum - thumbValue;
    if (wanted >= top)
        return std::max(rangeMinimum, std::min(rangeMaximum, top));
    double const snapped = std::floor(wanted / step + 0.5) * step;
    // Not a number with a step of 0. A multiple of a large step may lie outside the range.
    return snapped == snapped ? std::max(rangeMinimum, std::min(snapped, top)) : snapped;
}

void ScrollBarBase::increaseValue_() { changeValue_(value + step); }

void ScrollBarBase::decreaseValue_() { changeValue_(value - step); }

// --- Range ---

void ScrollBarBase::setRange(double newMinimum, double newMaximum) {
    if (validateRange_(newMinimum, newMaximum) && (newMinimum != rangeMinimum || newMaximum != rangeMaximum))
        onRangeChanged_(newMinimum, newMaximum);
}

void ScrollBarBase::getRange(double& minimum, double& maximum) const {
    minimum = rangeMinimum;
    maximum = rangeMaximum;
}

bool ScrollBarBase::validateRange_(double minimum, double maximum) const { return maximum >= minimum; }

void ScrollBarBase::onRangeChanged_(double newMinimum, double newMaximum) {
    rangeMinimum = newMinimum;
    rangeMaximum = newMaximum;
    setValue(value);
}

// --- Distances ---

// No number stays none.
double ScrollBarBase::limitToRange_(double wanted) const { return std::min(wanted, rangeMaximum - rangeMinimum); }

void ScrollBarBase::setStep(double newStep) {
    double const valid = validateStep_(newStep);
    if (differs_(valid, step))
        onStepChanged_(valid);
}

double ScrollBarBase::getStep() const { return step; }

void ScrollBarBase::onStepChanged_(double newStep) { step = newStep; }

double ScrollBarBase::validateStep_(double wanted) const { return limitToRange_(wanted); }

void ScrollBarBase::setPageStep(double newPageStep) {
    double const valid = validatePageStep_(newPageStep);
    if (differs_(valid, pageStep))
        onPageStepChanged_(valid);
}

double ScrollBarBase::getPageStep() const { return pageStep; }

void ScrollBarBase::onPageStepChanged_(double newPageStep) { pageStep = newPageStep; }

double ScrollBarBase::validatePageStep_(double wanted) const { return limitToRange_(wanted); }

void ScrollBarBase::setThumbValue(double newThumbValue) {
    double const valid = validateThumbValue_(newThumbValue);
    if (!differs_(valid, thumbValue))
        return;
    onThumbValueChanged_(valid);
    changeValue_(value);
}

double ScrollBarBase::getThumbValue() const { return thumbValue; }

void ScrollBarBase::onThumbValueChanged_(double newThumbValue) { thumbValue = newThumbValue; }

double ScrollBarBase::validateThumbValue_(double wanted) const { return limitToRange_(wanted); }

}  // namespace gui
