#include <gtest/gtest.h>

#include "support/fake_defaults_store.h"
#include "support/settings_model.h"

namespace chimewerk {
namespace {

/// A store that is opened anew on the same values.
class ReopenedStore final : public DefaultsStore {
public:
    explicit ReopenedStore(std::shared_ptr<FakeDefaultsStore> values)
        : values_(std::move(values)) {}

    void setObject(std::string_view key, std::optional<DefaultsValue> value) override {
        values_->setObject(key, std::move(value));
    }
    void setData(std::string_view key, MakeData make) override {
        values_->setData(key, std::move(make));
    }
    std::optional<DefaultsValue> object(std::string_view key) const override {
        return values_->object(key);
    }
    void keepDamaged() override { values_->keepDamaged(); }

private:
    std::shared_ptr<FakeDefaultsStore> values_;
};

TEST(AnySessionOfSettings, LeavesTheLibraryAsTheRulesHaveIt) {
    const MakeStorage makeStorage = [] {
        return [values = std::make_shared<FakeDefaultsStore>()] {
            return std::make_unique<ReopenedStore>(values);
        };
    };
    EXPECT_EQ(firstFailingSession(1, 150, 60, makeStorage), "");
}

}  // namespace
}  // namespace chimewerk
