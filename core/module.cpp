// Registration of the shared library with the instrument's application framework, at load and unload.

extern "C" {

// Hooks that a host may define. Where it defines none, as on a PC, the addresses are null and nothing happens.
__attribute__((weak, visibility("default"))) void RegisterExtensionModule(const char* name);
__attribute__((weak, visibility("default"))) void UnregisterExtensionModule(const char* name);

} // extern "C"

namespace {

constexpr char MODULE_NAME[] = "QSTDLIB";

__attribute__((constructor)) void RegisterAtLoad()
{
    if (RegisterExtensionModule != nullptr)
    {
        RegisterExtensionModule(MODULE_NAME);
    }
}

__attribute__((destructor)) void UnregisterAtUnload()
{
    if (UnregisterExtensionModule != nullptr)
    {
        UnregisterExtensionModule(MODULE_NAME);
    }
}

} // namespace
