#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include "zebcore/InterfaceRef.h"
#include "zebmediatypes/FrameRate.h"

namespace BE {

// Root of the host's exceptions.
class __attribute__((visibility("default"))) zeb_exception : public std::runtime_error {
 public:
  explicit zeb_exception(const std::string& text);
  ~zeb_exception() override;
};

// A value was assigned from one of another type. The text is "SerializeableTypeMismatch".
class __attribute__((visibility("default"))) exSerializeableTypeMismatch : public zeb_exception {
 public:
  exSerializeableTypeMismatch();
  ~exSerializeableTypeMismatch() override;
};

namespace Conversion {
// The text as a value; false, and the value untouched, if it is none.
bool Result(const char* text, std::int64_t& value);
bool Result(const char* text, zebmediatypes::FrameRate& value);
bool Result(const char* text, bool& value);
} // namespace Conversion

// A typed value that is read from and written to text, for preferences.
class SerializeableValueBase {
 public:
  virtual ~SerializeableValueBase() = default;
  virtual void FromString(const char* text) = 0;
  // Throws exSerializeableTypeMismatch when the type numbers differ.
  virtual void Assign(const SerializeableValueBase& other) = 0;
  virtual std::string ToString() const = 0;
  virtual std::unique_ptr<SerializeableValueBase> Clone() const = 0;
  virtual int GetVersion() const { return 1; }

  int GetTypeNumber() const { return mTypeNumber; }

 protected:
  explicit SerializeableValueBase(int typeNumber) : mTypeNumber(typeNumber) {}
  [[noreturn]] static void ThrowTypeMismatch();

 private:
  int mTypeNumber;
};

template <class T> class SerializeableValue;

// Type number 7; text by "%lli".
template <> class SerializeableValue<std::int64_t> : public SerializeableValueBase {
 public:
  SerializeableValue(int typeNumber, std::int64_t value) : SerializeableValueBase(typeNumber), mValue(value) {}
  std::int64_t GetValue() const { return mValue; }
  void SetValue(std::int64_t value) { mValue = value; }

  void FromString(const char* text) override;
  void Assign(const SerializeableValueBase& other) override;
  std::string ToString() const override;
  std::unique_ptr<SerializeableValueBase> Clone() const override;

 protected:
  std::int64_t mValue;
};

// Type number 7: a frame duration in ticks.
template <> class SerializeableValue<zebmediatypes::FrameRate> : public SerializeableValue<std::int64_t> {
 public:
  SerializeableValue(int typeNumber, zebmediatypes::FrameRate value)
      : SerializeableValue<std::int64_t>(typeNumber, value.GetTicksPerFrame()) {}
  zebmediatypes::FrameRate GetFrameRate() const { return zebmediatypes::FrameRate(mValue); }
  void FromString(const char* text) override;
  std::unique_ptr<SerializeableValueBase> Clone() const override;
};

// Type number 12: "true" or "false".
template <> class SerializeableValue<bool> : public SerializeableValueBase {
 public:
  SerializeableValue(int typeNumber, bool value) : SerializeableValueBase(typeNumber), mValue(value) {}
  bool GetValue() const { return mValue; }
  void SetValue(bool value) { mValue = value; }

  void FromString(const char* text) override;
  void Assign(const SerializeableValueBase& other) override;
  std::string ToString() const override;
  std::unique_ptr<SerializeableValueBase> Clone() const override;

 private:
  bool mValue;
};

inline constexpr int kSerializeableType_Int64 = 7;
inline constexpr int kSerializeableType_Bool = 12;

inline constexpr const char* kPrefsStillImagesDefaultFramerate = "BE.Prefs.StillImages.DefaultFramerate";
inline constexpr const char* kPrefsStillImagesDefaultIsDropFrame = "BE.Prefs.StillImages.DefaultIsDropFrame";

class IPreferenceStore : public virtual zebcore::classref::IObject {
 public:
  // Assigns the stored value; false, and the value untouched, if there is none.
  virtual bool Read(const char* key, SerializeableValueBase& value) const = 0;
  virtual void Write(const char* key, const SerializeableValueBase& value) = 0;
  virtual void Remove(const char* key) = 0;
};

class IBackend : public virtual zebcore::classref::IObject {
 public:
  virtual zebcore::classref::InterfaceRef<IPreferenceStore> GetPreferences() const = 0;
};

// The one backend of the process.
zebcore::classref::InterfaceRef<IBackend> GetBackend();
// For tests: a backend without a preference store, or (true) with it again.
void SetPreferencesAvailable(bool available);
// For tests and for drives: from now on preferences are neither read from the user's file nor written to it, and none
// is set.
void SetPreferencesInMemory();

} // namespace BE
