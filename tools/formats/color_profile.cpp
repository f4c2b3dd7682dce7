#include "tools/formats/color_profile.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#ifdef VNCORE_TOOL_LCMS
#include <lcms2.h>
#endif

namespace vn::tool {

ProfileSpace SpaceOf(const std::string& profile) {
  constexpr size_t kHeaderBytes = 128, kSpaceAt = 16;
  if (profile.size() < kHeaderBytes) return ProfileSpace::kNone;
  const auto space = std::string_view(profile).substr(kSpaceAt, 4);
  if (space == "GRAY") return ProfileSpace::kGray;
  if (space == "RGB ") return ProfileSpace::kRgb;
  return space == "CMYK" ? ProfileSpace::kInks : ProfileSpace::kNone;
}

#ifdef VNCORE_TOOL_LCMS

namespace {

struct CloseProfile {
  void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using Profile = std::unique_ptr<void, CloseProfile>;

Profile Open(const std::string& profile) {
  return Profile(
      cmsOpenProfileFromMem(profile.data(), static_cast<cmsUInt32Number>(profile.size())));
}

// Gray that is shown as sRGB shows equal samples.
Profile MakeGraySrgb() {
  // IEC 61966-2-1.
  const cmsFloat64Number curve[] = {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
  constexpr cmsInt32Number kGammaWithLine = 4;
  cmsToneCurve* const tone = cmsBuildParametricToneCurve(nullptr, kGammaWithLine, curve);
  Profile profile(tone ? cmsCreateGrayProfile(cmsD50_xyY(), tone) : nullptr);
  if (tone) cmsFreeToneCurve(tone);
  return profile;
}

struct DeleteTransform {
  void operator()(void* transform) const { cmsDeleteTransform(transform); }
};
using Transform = std::unique_ptr<void, DeleteTransform>;

// As photographs are turned for the screen everywhere: the profile's own perceptual tables where it
// has them, black going to black.
Transform MakeTransform(const std::string& profile, cmsUInt32Number from, const Profile& srgb,
                        cmsUInt32Number to) {
  const Profile open = Open(profile);
  if (!open || !srgb) return nullptr;
  return Transform(cmsCreateTransform(open.get(), from, srgb.get(), to, INTENT_PERCEPTUAL,
                                      cmsFLAGS_BLACKPOINTCOMPENSATION | cmsFLAGS_COPY_ALPHA));
}

class Colors : public ToSrgb {
 public:
  explicit Colors(Transform transform) : transform_(std::move(transform)) {}
  void Apply(const uint8_t* from, uint8_t* to, size_t pixels) const override {
    cmsDoTransform(transform_.get(), from, to, static_cast<cmsUInt32Number>(pixels));
  }

 private:
  const Transform transform_;
};

// Every sample but alpha by a table.
class Grays : public ToSrgb {
 public:
  Grays(const Transform& transform, Samples samples)
      : samples_(samples == Samples::kGrayAlpha ? 2
                 : samples == Samples::kGray    ? 1
                 : samples == Samples::kBgr     ? 3
                                                : 4),
        grays_(samples_ % 2 ? samples_ : samples_ - 1) {
    for (int level = 0; level < 256; ++level) {
      float light = static_cast<float>(level) / 255;
      cmsDoTransform(transform.get(), &light, &light, 1);
      table_[level] = static_cast<uint8_t>(std::lround(std::clamp(light, 0.0f, 1.0f) * 255));
    }
  }
  void Apply(const uint8_t* from, uint8_t* to, size_t pixels) const override {
    for (size_t i = 0; i < pixels * samples_; ++i)
      to[i] = i % samples_ < grays_ ? table_[from[i]] : from[i];
  }

 private:
  const size_t samples_, grays_;
  uint8_t table_[256];
};

}  // namespace

std::string ProfileName(const std::string& profile) {
  const Profile open = Open(profile);
  char name[256] = "";
  if (!open ||
      !cmsGetProfileInfoASCII(open.get(), cmsInfoDescription, "en", "US", name, sizeof name))
    return {};
  return name;
}

std::unique_ptr<ToSrgb> ToSrgb::Create(const std::string& profile, Samples samples) {
  const ProfileSpace space = SpaceOf(profile);
  const bool inks = samples == Samples::kInks;
  const bool colors = samples == Samples::kBgr || samples == Samples::kBgra;
  if (space == ProfileSpace::kGray && !inks) {
    const Transform grays = MakeTransform(profile, TYPE_GRAY_FLT, MakeGraySrgb(), TYPE_GRAY_FLT);
    return grays ? std::make_unique<Grays>(grays, samples) : nullptr;
  }
  if (space != (inks ? ProfileSpace::kInks : ProfileSpace::kRgb) || (!inks && !colors))
    return nullptr;
  const cmsUInt32Number from = inks                       ? TYPE_CMYK_8
                               : samples == Samples::kBgr ? TYPE_BGR_8
                                                          : TYPE_BGRA_8;
  const cmsUInt32Number to = inks ? TYPE_BGR_8 : from;
  Transform transform = MakeTransform(profile, from, Profile(cmsCreate_sRGBProfile()), to);
  return transform ? std::make_unique<Colors>(std::move(transform)) : nullptr;
}

#else

std::string ProfileName(const std::string&) { return {}; }

std::unique_ptr<ToSrgb> ToSrgb::Create(const std::string&, Samples) { return nullptr; }

#endif

}  // namespace vn::tool
