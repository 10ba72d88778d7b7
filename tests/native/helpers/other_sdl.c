/* Built as two libraries that larkspur is not linked with: one with SDL 1.2's way of telling its
 * version, one with SDL 2's. */

struct version {
    unsigned char major;
    unsigned char minor;
    unsigned char patch;
};

#ifdef LIKE_SDL_1
const struct version* SDL_Linked_Version(void);

const struct version* SDL_Linked_Version(void) {
    static const struct version version = {1, 2, 99};
    return &version;
}
#else
void SDL_GetVersion(struct version* version);

void SDL_GetVersion(struct version* version) {
    version->major = 2;
    version->minor = 34;
    version->patch = 5;
}
#endif
