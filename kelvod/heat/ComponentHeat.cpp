#include "heat/ComponentHeat.h"

#include "base/DecisionObserver.h"
#include "heat/HeatProcessCenter.h"

float ComponentHeat::configuredCoefficient() const {
    return HeatProcessCenter::getInstance()->getCoeffs(componentName(mType));
}

void ComponentHeat::pushSample(const EnergySample& sample, const char* source,
                               std::initializer_list<Figure> figures) {
    if (kelvo::DecisionObserver* const observer = kelvo::decisionObserver()) {
        kelvo::HeatSample seen{mType, sample.getValue(), source, {}};
        for (const Figure& figure : figures) {
            seen.figures.emplace(figure.name, figure.value);
        }
        observer->onHeatSample(seen);
    }
    mSamples->push(std::make_unique<EnergySample>(sample));
}
