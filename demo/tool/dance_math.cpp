#include "demo/tool/dance_math.h"

namespace dance {

Curve blurred(const Curve& curve, double sigmaFrames) {
    const auto reach = static_cast<std::ptrdiff_t>(std::ceil(sigmaFrames * 3));
    std::vector<double> weights;
    double sum = 0;
    for (std::ptrdiff_t i = -reach; i <= reach; ++i) {
        const double x = static_cast<double>(i) / sigmaFrames;
        weights.push_back(std::exp(-0.5 * x * x));
        sum += weights.back();
    }
    const auto last = static_cast<std::ptrdiff_t>(curve.size()) - 1;
    Curve result(curve.size());
    for (std::ptrdiff_t i = 0; i <= last; ++i) {
        double value = 0;
        for (std::ptrdiff_t k = -reach; k <= reach; ++k) {
            const auto from = static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(i + k, 0, last));
            value += weights[static_cast<std::size_t>(k + reach)] * curve[from];
        }
        result[static_cast<std::size_t>(i)] = value / sum;
    }
    return result;
}

Curve widened(const Curve& curve, std::size_t reach) {
    Curve result(curve.size());
    for (std::size_t i = 0; i < curve.size(); ++i) {
        const std::size_t first = i < reach ? 0 : i - reach;
        const std::size_t last = std::min(curve.size() - 1, i + reach);
        result[i] = *std::max_element(curve.begin() + static_cast<std::ptrdiff_t>(first),
                                      curve.begin() + static_cast<std::ptrdiff_t>(last) + 1);
    }
    return result;
}

}  // namespace dance
