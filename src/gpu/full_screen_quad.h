// The quad that every 2-D pass draws: 4 vertices of x, y, u, v as a triangle strip. Location 0
// takes x and y, location 1 takes u and v. The thread that owns the OpenGL context.
#pragma once

class GL_Image;

// Draws the shared quad with whatever program and textures are current. The first call makes it.
void DrawFullScreenQuad();
// The same with all of the image's textures bound from unit 0 up, and unbound afterwards.
void DrawImageQuad(const GL_Image& image);
// Releases the shared quad; the next draw makes it anew. Before the context goes.
void ReleaseFullScreenQuad();
