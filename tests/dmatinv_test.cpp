#include <gtest/gtest.h>

#include <cmath>
#include <random>

extern "C" void dmatinv_(double* source, double* result, int* status);

namespace {

TEST(PlatformInversion, GivesTheIdentityWithTheMatrixAtAnyScale) {
  std::mt19937_64 engine(1);
  std::uniform_real_distribution<double> spread(-1.0, 1.0);
  for (const double scale : {1.0, 1e-150, 1e150, 1e-250, 1e250}) {
    double m[9], inverse[9];
    int status = -1;
    for (double& element : m) element = spread(engine);
    for (int i = 0; i < 3; ++i) m[i] *= scale;
    dmatinv_(m, inverse, &status);
    ASSERT_EQ(status, 0) << scale;
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 3; ++j) {
        double sum = 0.0;
        for (int k = 0; k < 3; ++k) sum += inverse[3 * k + i] * m[3 * j + k];
        EXPECT_NEAR(sum / (j == 0 ? scale : 1.0) * (i == 0 ? scale : 1.0), i == j, 1e-12) << scale;
      }
  }
}

TEST(PlatformInversion, AnswersSingularMatricesWithStatus1AndZeros) {
  double cases[][9] = {{1, 2, 3, 4, 5, 6, 7, 8, 9},
                       {},
                       {1, 0, 0, 0, NAN, 0, 0, 0, 1},
                       {INFINITY, 0, 0, 0, 1, 0, 0, 0, 1}};
  for (double(&m)[9] : cases) {
    int status = -1;
    dmatinv_(m, m, &status);
    EXPECT_EQ(status, 1);
    for (const double element : m) EXPECT_EQ(element, 0.0);
  }
}

}  // namespace
