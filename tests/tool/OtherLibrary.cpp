// A library that is no module of the component.
namespace {

[[maybe_unused]] constexpr int kNothing = 0;

}  // namespace
