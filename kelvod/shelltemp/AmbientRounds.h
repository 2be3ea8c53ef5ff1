#pragma once

#include <cstdint>
#include <string>

namespace kelvo {

/** What the fitting engine gives the ambient estimator; by default nobody estimates. */
class AmbientRounds {
  public:
    virtual ~AmbientRounds() = default;
    /**
     * Makes the estimator. Its construction asks the fitting engine in its turn, so this is called
     * without the engine's main mutex and before the methods below.
     */
    virtual void prepare() {}
    /** Whether a round can be made now. */
    virtual bool checkAvailableStats() { return false; }
    /** A round: device temperature and power as the models scale them. */
    virtual void updateAmbientTemp(int32_t /*temp*/, int32_t /*power*/) {}
    /** The ambient scene whose parameters count from now on. */
    virtual void switchFittingParameter(const std::string& /*scene*/) {}
};

}  // namespace kelvo
