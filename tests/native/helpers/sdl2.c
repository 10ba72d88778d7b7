/* As much of SDL 2 as tells its version, for a machine that has none. */
struct version {
    unsigned char major, minor, patch;
};

void SDL_GetVersion(struct version* version);

void SDL_GetVersion(struct version* version) {
    version->major = 2;
    version->minor = 0;
    version->patch = 14;
}
