/* Times libimagequant on a binary PPM: palette of 256 colours, then remapping without and with its diffusion.
 * liq_peer FILE.ppm */
#include <libimagequant.h>

#include <stdio.h>
#include <stdlib.h>
#include <time.h>

static double Now(void) {
    struct timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return (double)time.tv_sec * 1e3 + (double)time.tv_nsec * 1e-6;
}

static unsigned char* ReadPpm(const char* file, int* width, int* height) {
    FILE* in = fopen(file, "rb");
    if (!in || fscanf(in, "P6 %d %d 255", width, height) != 2)
        return NULL;
    fgetc(in);
    size_t count = (size_t)*width * (size_t)*height;
    unsigned char* pixels = malloc(count * 4);
    for (size_t i = 0; pixels && i < count; ++i) {
        if (fread(pixels + 4 * i, 3, 1, in) != 1)
            return NULL;
        pixels[4 * i + 3] = 255;
    }
    fclose(in);
    return pixels;
}

int main(int argc, char** argv) {
    int width, height;
    unsigned char* pixels = argc == 2 ? ReadPpm(argv[1], &width, &height) : NULL;
    if (!pixels) {
        fprintf(stderr, "liq_peer: expected one binary PPM\n");
        return 1;
    }
    size_t count = (size_t)width * (size_t)height;
    unsigned char* out = malloc(count);
    for (int speed = 4; speed <= 10; speed += 6) {
        liq_attr* attributes = liq_attr_create();
        liq_set_max_colors(attributes, 256);
        liq_set_speed(attributes, speed);
        liq_image* image = liq_image_create_rgba(attributes, pixels, width, height, 0);
        liq_result* result = NULL;
        double start = Now();
        if (liq_image_quantize(image, attributes, &result) != LIQ_OK)
            return 1;
        double built = Now();
        liq_set_dithering_level(result, 0);
        liq_write_remapped_image(result, image, out, count);
        double mapped = Now();
        liq_set_dithering_level(result, 1);
        liq_write_remapped_image(result, image, out, count);
        double diffused = Now();
        printf("peer  libimagequant speed %-2d  256 adaptive, none               %8.2f ms\n", speed,
               mapped - start);
        printf("peer  libimagequant speed %-2d  256 adaptive, its diffusion      %8.2f ms\n", speed,
               built - start + diffused - mapped);
    }
    return 0;
}
