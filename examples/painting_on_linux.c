/* One block of pixels for three libraries: VNCORE32 paints a picture on it, cairo draws over it, SDL
 * shows it. It is the memory of a 32-bit DIB section, and nobody copies it.
 *
 * usage: example_painting_on_linux [OUT.bmp]     in a window; or, with a name, into a file
 */
#include <SDL.h>
#include <cairo.h>
#include <math.h>
#include <stdio.h>
#include <string.h>

#include <vncore/vncore.h>

enum { WIDTH = 480, HEIGHT = 300 };

/* A device context on a block of 32-bit pixels, blue first, top line first, without gaps. */
typedef struct Canvas {
  HDC context;
  HBITMAP section;
  HGDIOBJ before;
  void* pixels;
} Canvas;

static int OpenCanvas(Canvas* canvas) {
  BITMAPINFO info;
  memset(&info, 0, sizeof info);
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = WIDTH;
  info.bmiHeader.biHeight = -HEIGHT; /* top line first */
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  canvas->context = CreateCompatibleDC(NULL);
  canvas->section =
      CreateDIBSection(canvas->context, &info, DIB_RGB_COLORS, &canvas->pixels, NULL, 0);
  if (!canvas->section) {
    DeleteDC(canvas->context);
    return 0;
  }
  canvas->before = SelectObject(canvas->context, canvas->section);
  return 1;
}

static void CloseCanvas(Canvas* canvas) {
  SelectObject(canvas->context, canvas->before);
  DeleteObject(canvas->section);
  DeleteDC(canvas->context);
}

/* A small picture of waves; on the canvas it is painted six times as large. */
static VnStatus MakePicture(BitmapHandle* bitmap) {
  const VnStatus made = Vn_CreateBitmap(bitmap, STORAGE_AUTO, WIDTH / 6, HEIGHT / 6, 24, ORDER_BGR,
                                        NULL, VIEW_TOP_FIRST);
  if (made != OK) return made;
  const int32_t state = Vn_LockBitmap(bitmap);
  for (int y = 0; y < HEIGHT / 6; ++y) {
    uint8_t row[WIDTH / 6 * 3];
    for (int x = 0; x < WIDTH / 6; ++x) {
      const double wave = sin(x * 0.12 + 2 * sin(y * 0.11));
      row[3 * x] = (uint8_t)(150 + 70 * wave);
      row[3 * x + 1] = (uint8_t)(110 + 60 * wave);
      row[3 * x + 2] = (uint8_t)(60 + 3 * y);
    }
    Vn_PutBitmapRow(bitmap, row, (uint32_t)y, sizeof row);
  }
  Vn_UnlockBitmap(bitmap, state);
  return OK;
}

static VnStatus Paint(const Canvas* canvas) {
  BitmapHandle bitmap;
  VnStatus status = MakePicture(&bitmap);
  if (status != OK) return status;
  const RECT whole = {0, 0, WIDTH, HEIGHT};
  status = Vn_PaintDC(canvas->context, &bitmap, NULL, NULL, &whole, NULL, SRCCOPY);
  Vn_FreeBitmap(&bitmap);
  return status;
}

/* The fourth byte of a pixel means nothing to the library, and nothing in this format of cairo's. */
static int DrawOver(const Canvas* canvas) {
  cairo_surface_t* surface = cairo_image_surface_create_for_data(canvas->pixels, CAIRO_FORMAT_RGB24,
                                                                 WIDTH, HEIGHT, WIDTH * 4);
  cairo_t* cairo = cairo_create(surface);
  cairo_arc(cairo, WIDTH / 2.0, HEIGHT / 2.0, 90, 0, 6.2832);
  cairo_set_source_rgba(cairo, 1, 1, 1, 0.35);
  cairo_fill_preserve(cairo);
  cairo_set_source_rgb(cairo, 1, 1, 1);
  cairo_set_line_width(cairo, 5);
  cairo_stroke(cairo);
  cairo_set_font_size(cairo, 44);
  cairo_move_to(cairo, WIDTH / 2.0 - 74, HEIGHT / 2.0 + 15);
  cairo_show_text(cairo, "shared");
  const int done = cairo_status(cairo) == CAIRO_STATUS_SUCCESS;
  cairo_destroy(cairo);
  cairo_surface_flush(surface); /* what cairo still holds back goes into the pixels */
  cairo_surface_destroy(surface);
  return done;
}

/* Waits in a window until it is closed. */
static int ShowInWindow(SDL_Surface* picture) {
  SDL_Window* window = SDL_CreateWindow("VNCORE32, cairo, SDL", SDL_WINDOWPOS_UNDEFINED,
                                        SDL_WINDOWPOS_UNDEFINED, WIDTH, HEIGHT, 0);
  if (!window) return 0;
  SDL_Event event = {0};
  do {
    SDL_BlitSurface(picture, NULL, SDL_GetWindowSurface(window), NULL);
    SDL_UpdateWindowSurface(window);
  } while (SDL_WaitEvent(&event) && event.type != SDL_QUIT);
  SDL_DestroyWindow(window);
  return 1;
}

static int Show(const Canvas* canvas, const char* file) {
  SDL_Surface* picture = SDL_CreateRGBSurfaceWithFormatFrom(canvas->pixels, WIDTH, HEIGHT, 32,
                                                            WIDTH * 4, SDL_PIXELFORMAT_RGB888);
  int shown = 0;
  if (picture && file) {
    shown = SDL_SaveBMP(picture, file) == 0;
  } else if (picture && SDL_Init(SDL_INIT_VIDEO) == 0) {
    shown = ShowInWindow(picture);
  }
  if (!shown) fprintf(stderr, "%s\n", SDL_GetError());
  SDL_FreeSurface(picture);
  SDL_Quit();
  return shown;
}

int main(int argc, char** argv) {
  Canvas canvas;
  if (!OpenCanvas(&canvas)) return 1;
  const int done =
      Paint(&canvas) == OK && DrawOver(&canvas) && Show(&canvas, argc > 1 ? argv[1] : NULL);
  CloseCanvas(&canvas);
  return done ? 0 : 1;
}
